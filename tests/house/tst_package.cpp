// What an installation puts into a directory, and what the Debian package of it says of itself.
#include "support/FileContent.h"
#include "support/ProgramAnswer.h"
#include "support/ScratchHome.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>

using namespace quorvia;
using test::answerOf, test::contentOf, test::ProgramAnswer;

namespace {

/// All files below `directory`, from there on, sorted.
QStringList filesBelow(const QString& directory)
{
    QStringList files;
    QDirIterator each(directory, QDir::Files | QDir::Hidden | QDir::System, QDirIterator::Subdirectories);
    while (each.hasNext())
        files.append(each.next().mid(directory.size() + 1));
    files.sort();
    return files;
}

const QStringList fixedFiles = {
    "bin/quorvia",
    "libexec/quorvia/postrel",
    "libexec/quorvia/quorvia-scan",
    "share/applications/quorvia.desktop",
    "share/bash-completion/completions/quorvia",
    "share/doc/quorvia/changelog.gz",
    "share/doc/quorvia/copyright",
    "share/fish/vendor_completions.d/quorvia.fish",
    "share/icons/hicolor/128x128/apps/quorvia.png",
    "share/icons/hicolor/16x16/apps/quorvia.png",
    "share/icons/hicolor/22x22/apps/quorvia.png",
    "share/icons/hicolor/24x24/apps/quorvia.png",
    "share/icons/hicolor/256x256/apps/quorvia.png",
    "share/icons/hicolor/32x32/apps/quorvia.png",
    "share/icons/hicolor/48x48/apps/quorvia.png",
    "share/icons/hicolor/512x512/apps/quorvia.png",
    "share/icons/hicolor/64x64/apps/quorvia.png",
    "share/icons/hicolor/scalable/apps/quorvia.svg",
    "share/man/man1/quorvia.1.gz",
    "share/metainfo/example.halvexa.quorvia.metainfo.xml",
    "share/mime/packages/quorvia-mime.xml",
    "share/quorvia/AssociationImages.dat",
    "share/quorvia/help/qo_faq_help.htm",
    "share/quorvia/help/qo_shortcut.htm",
    "share/quorvia/help/style.css",
    "share/quorvia/interface.dat",
    "share/zsh/vendor-completions/_quorvia",
};

/// What is installed below the prefix, sorted.
QStringList expectedFiles()
{
    QStringList files = fixedFiles;
    for (const QString& picture : QDir(SOURCE_FOLDER "/data/help/images").entryList(QDir::Files))
        files.append("share/quorvia/help/images/" + picture);
    files.sort();
    return files;
}

/// The group of `pattern` in each of its matches in `text`.
QStringList caught(const QString& text, const char* pattern)
{
    QStringList words;
    auto match = QRegularExpression(QLatin1String(pattern)).globalMatch(text);
    while (match.hasNext())
        words.append(match.next().captured(1));
    return words;
}

/// The value of `field` in the control file of a package.
QString fieldOf(const QString& package, const QString& field)
{
    return answerOf("dpkg-deb", {"-f", package, field}).output.trimmed();
}

} // namespace

class TestPackage : public QObject
{
    Q_OBJECT

  private:
    QTemporaryDir m_stage;
    QTemporaryDir m_packages;
    test::ScratchHome m_home;
    QString m_architecture;

    QString staged(const QString& name) const { return m_stage.filePath(name); }
    QString text(const QString& name) const { return QString::fromUtf8(contentOf(staged(name))); }
    QString package() const { return m_packages.filePath("quorvia_" VERSION "_" + m_architecture + ".deb"); }

  private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(m_stage.isValid() && m_packages.isValid());
        const ProgramAnswer installed =
            answerOf(CMAKE_PROGRAM, {"--install", BUILD_FOLDER, "--prefix", m_stage.path()});
        QVERIFY2(installed.code == 0, qPrintable(installed.output));
        m_architecture = answerOf("dpkg", {"--print-architecture"}).output.trimmed();
        QVERIFY(!m_architecture.isEmpty());
        const ProgramAnswer packed =
            answerOf(CPACK_PROGRAM,
                     {"-G", "DEB", "--config", BUILD_FOLDER "/CPackConfig.cmake", "-B", m_packages.path()});
        QVERIFY2(packed.code == 0, qPrintable(packed.output));
    }

    void allFilesAndNoOther()
    {
        QVERIFY(expectedFiles().size() > fixedFiles.size() + 5);
        QCOMPARE(filesBelow(m_stage.path()), expectedFiles());
    }

    void theFilesForTheDesktopAreInForm_data()
    {
        QTest::addColumn<QString>("program");
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("desktop entry")
            << "desktop-file-validate" << QStringList{staged("share/applications/quorvia.desktop")};
        QTest::newRow("metainfo") << "appstreamcli"
                                  << QStringList{
                                         "validate", "--no-net", "--pedantic",
                                         staged("share/metainfo/example.halvexa.quorvia.metainfo.xml")};
        QTest::newRow("manual page") << "mandoc"
                                     << QStringList{"-Tlint", staged("share/man/man1/quorvia.1.gz")};
    }
    void theFilesForTheDesktopAreInForm()
    {
        QFETCH(QString, program);
        QFETCH(QStringList, arguments);
        const ProgramAnswer answer = answerOf(program, arguments);
        QVERIFY2(answer.code == 0, qPrintable(answer.output));
    }

    /// What is said in several places is the same in all.
    void thePlacesAgree()
    {
        const QString entry = text("share/applications/quorvia.desktop");
        const QString metainfo = text("share/metainfo/example.halvexa.quorvia.metainfo.xml");
        QCOMPARE(caught(metainfo, "<mediatype>(.*)</mediatype>"),
                 caught(entry, "MimeType=(.*);\n").value(0).split(';'));
        QCOMPARE(caught(metainfo, "<release version=\"([^\"]*)\"").value(0), QStringLiteral(VERSION));
        QCOMPARE(caught(metainfo, "<summary>(.*)</summary>"), caught(entry, "Comment=(.*)\n"));
        const QByteArray changes = contentOf(SOURCE_FOLDER "/data/package/changelog");
        QVERIFY(changes.startsWith("quorvia (" VERSION ") "));
        const QDate released = QDate::fromString(
            caught(metainfo, "<release version=\"[^\"]*\" date=\"([^\"]*)\"").value(0), Qt::ISODate);
        QVERIFY(released.isValid());
        QCOMPARE(caught(QString::fromUtf8(changes), ">  (.*)\n").value(0).section(' ', 0, 3),
                 QLocale::c().toString(released, "ddd, dd MMM yyyy"));
        const QStringList pictures = caught(metainfo, "<image>.*/([^/]*)</image>");
        QVERIFY(pictures.size() >= 2);
        for (const QString& picture : pictures)
            QVERIFY2(QFile::exists(SOURCE_FOLDER "/docs/images/" + picture), qPrintable(picture));
        QVERIFY(entry.contains("\nExec=quorvia %f\n") && entry.contains("\nIcon=quorvia\n"));
    }

    void theProgramAnswersFromThere()
    {
        const ProgramAnswer version = answerOf(staged("bin/quorvia"), {"--version"});
        QCOMPARE(version.output, QStringLiteral("Quorvia " VERSION "\n"));
        QCOMPARE(version.code, 0);
    }

    /// The program finds what was installed with it: this shows by its complaint about a menu that is none.
    void theProgramTakesItsFilesFromThere()
    {
        const QString definition = staged("share/quorvia/interface.dat");
        const QByteArray whole = contentOf(definition);
        QFile file(definition);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.close();
        QProcess program;
        program.start(staged("bin/quorvia"), {});
        const QString log = m_home.path(".local/state/quorvia/qolog.log");
        QTRY_VERIFY_WITH_TIMEOUT(contentOf(log).contains(definition.toUtf8() + " has no section"), 30000);
        program.terminate();
        QVERIFY(program.waitForFinished());
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(whole), whole.size());
    }

    void thePackageHoldsTheSameFiles()
    {
        const QString list = answerOf("dpkg-deb", {"-c", package()}).output;
        QStringList files = caught(list, "-(?:rwxr-xr-x|rw-r--r--) root/root .* \\./usr/(\\S+)\n");
        files.sort();
        QCOMPARE(files, expectedFiles()); // so all belong to root, and nobody else may write them
        QCOMPARE(caught(list, "(drwx.*)\n").filter(QRegularExpression("^(?!drwxr-xr-x root/root )")),
                 QStringList());
    }

    void whatThePackageSaysOfItself_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<QString>("value");
        QTest::newRow("name") << "Package"
                              << "quorvia";
        QTest::newRow("version") << "Version" << QStringLiteral(VERSION);
        QTest::newRow("section") << "Section"
                                 << "graphics";
        QTest::newRow("priority") << "Priority"
                                  << "optional";
        QTest::newRow("homepage") << "Homepage"
                                  << "https://www.halvexa.example/quorvia/";
        QTest::newRow("maintainer") << "Maintainer"
                                    << "Halvexa <packages@halvexa.example>";
    }
    void whatThePackageSaysOfItself()
    {
        QFETCH(QString, field);
        QFETCH(QString, value);
        QCOMPARE(fieldOf(package(), field), value);
    }

    /// A library that is loaded while the program runs is seen by no tool that reads the program.
    void thePackageDependsOnWhatIsLoadedLater_data()
    {
        QTest::addColumn<QString>("library");
        for (const char* library :
             {"libcups.so.2", "libheif.so.1", JXL_LIBRARY, "libQt6Widgets.so.6", "libsane.so.1"})
            QTest::newRow(library) << library;
    }
    void thePackageDependsOnWhatIsLoadedLater()
    {
        QFETCH(QString, library);
        const QString owners = answerOf("dpkg-query", {"-S", "*/" + library}).output;
        const QStringList owner =
            caught(owners, ("(?:^|\n)([^: \n]+)[^\n]*/" + library.toLatin1() + "\n").constData());
        QVERIFY2(!owner.isEmpty(), qPrintable(owners));
        const QStringList depends = caught(fieldOf(package(), "Depends"), "(?:^|, )([^ ,]+)");
        QVERIFY2(depends.contains(owner.first()), qPrintable(depends.join(' ') + ": " + owner.first()));
    }

    void theScriptsOfThePackage()
    {
        const QTemporaryDir control;
        QCOMPARE(answerOf("dpkg-deb", {"-e", package(), control.path()}).code, 0);
        QStringList names = QDir(control.path()).entryList(QDir::Files, QDir::Name);
        QCOMPARE(names, QStringList({"control", "md5sums", "postrm", "prerm"}));
        for (const char* name : {"prerm", "postrm"}) {
            const QString path = control.filePath(QLatin1String(name));
            QVERIFY(QFileInfo(path).isExecutable());
            QCOMPARE(contentOf(path), contentOf(SOURCE_FOLDER "/data/package/" + QLatin1String(name)));
        }
    }
};

QTEST_GUILESS_MAIN(TestPackage)
#include "tst_package.moc"

// Where resources are found: beside the user's own files, as installed, and in the source tree.
#include "../support/ScratchHome.h"
#include "app/Resources.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTest>

#include <cstdio>

using namespace quorvia::app;
using quorvia::test::ScratchHome;

namespace {

const QString definition = QStringLiteral("interface.dat");
constexpr char ask[] = "--where";

} // namespace

class TestResources : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void theFirstThatIsAFile_data()
    {
        QTest::addColumn<QStringList>("present");
        QTest::addColumn<QString>("found");
        QTest::newRow("in both") << QStringList{"a/x.dat", "b/x.dat"} << "a/x.dat";
        QTest::newRow("in the second") << QStringList{"b/x.dat"} << "b/x.dat";
        QTest::newRow("a directory is none") << QStringList{"a/x.dat/file", "b/x.dat"} << "b/x.dat";
        QTest::newRow("another name") << QStringList{"b/y.dat"} << "a/x.dat";
        QTest::newRow("nowhere") << QStringList() << "a/x.dat";
    }

    void theFirstThatIsAFile()
    {
        QFETCH(QStringList, present);
        QFETCH(QString, found);
        const ScratchHome home;
        for (const QString& file : present)
            home.write(file, "");
        const QStringList directories{home.path(QStringLiteral("a/")), home.path(QStringLiteral("b/"))};
        QCOMPARE(resourcePathIn(directories, QStringLiteral("x.dat")), home.path(found));
    }

    void theUsersOwnComesBeforeTheSourceTree()
    {
        const ScratchHome home;
        const QString shipped = resourcePath(definition);
        QVERIFY2(shipped.endsWith(QLatin1String("/data/interface.dat")), qPrintable(shipped));
        QVERIFY(QFile::exists(shipped));
        const QString own = home.write(QStringLiteral("root/interface.dat"), "");
        QCOMPARE(resourcePath(definition), own);
        QCOMPARE(resourcePath(QStringLiteral("help/none.htm")),
                 home.path(QStringLiteral("root/help/none.htm")));
    }

    void whatTheBuildMadeIsFoundBesideTheProgram()
    {
        const ScratchHome home;
        const QString name = QStringLiteral("tst_resources/made.dat");
        const QString beside = QCoreApplication::applicationDirPath() + QStringLiteral("/data/");
        QVERIFY(resourcePath(name).startsWith(home.path(QStringLiteral("root/"))));
        QVERIFY(QDir().mkpath(beside + QStringLiteral("tst_resources")));
        QFile made(beside + name);
        QVERIFY(made.open(QIODevice::WriteOnly));
        const QString found = resourcePath(name);
        QVERIFY(made.remove() && QDir().rmpath(beside + QStringLiteral("tst_resources")));
        QCOMPARE(found, beside + name);
    }

    void anInstalledProgramFindsWhatIsInstalled()
    {
        const ScratchHome home;
        const QString program = home.write(QStringLiteral("bin/program"), "");
        QVERIFY(QFile::remove(program));
        QVERIFY(QFile::copy(QCoreApplication::applicationFilePath(), program));
        const auto answer = [&program] {
            QProcess process;
            process.start(program, {QLatin1String(ask)});
            process.waitForFinished();
            return QString::fromLocal8Bit(process.readAllStandardOutput());
        };
        QCOMPARE(answer(),
                 home.path(QStringLiteral("root/interface.dat"))); // and not that of the source tree
        const QString installed = home.write(QStringLiteral("share/quorvia/interface.dat"), "");
        QCOMPARE(answer(), installed);
        const QString own = home.write(QStringLiteral("root/interface.dat"), "");
        QCOMPARE(answer(), own);
    }
};

int main(int argc, char* argv[])
{
    if (argc > 1 && qstrcmp(argv[1], ask) == 0) {
        std::printf("%s", QFile::encodeName(resourcePath(definition)).constData());
        return 0;
    }
    QCoreApplication application(argc, argv);
    TestResources test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_resources.moc"

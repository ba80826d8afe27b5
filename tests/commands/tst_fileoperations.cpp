// Deleting and renaming the files of images: which file goes where, and what is asked of the window.
#include "commands/FileOperations.h"
#include "commands/SaverBench.h"
#include "platform/Dialogs.h"

#include <QTest>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace quorvia;
using namespace quorvia::test;
using commands::FileOperations;

class TestFileOperations : public QObject
{
    Q_OBJECT

  private:
    ScratchTrash m_trash;
    std::unique_ptr<ScratchHome> m_home;
    std::unique_ptr<FileOperations> m_files;
    QString m_current;
    QString m_menu;
    QStringList m_steps;
    platform::BoxAnswer m_answer = platform::BoxAnswer::Yes;
    std::vector<platform::MessageBox> m_boxes;
    std::vector<platform::TextQuestion> m_questions;

    QString in(const QString& name) const { return m_home->path("pics/" + name); }
    QString write(const QString& name) const { return m_home->write("pics/" + name, name.toUtf8()); }
    /// Asked for a name, the user types `name`.
    void rename(const QString& name)
    {
        const platform::TextQuestionAnswerer question([&](const platform::TextQuestion& asked) {
            m_questions.push_back(asked);
            return name;
        });
        const platform::MessageBoxAnswerer box([this](const platform::MessageBox& shown) {
            m_boxes.push_back(shown);
            return m_answer;
        });
        m_files->renameCurrent();
    }
    static void addNames()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << "a.png";
        QTest::newRow("quotes") << "\"a'.png";
        QTest::newRow("percent") << "100%20 %1.png";
        QTest::newRow("newline") << "a\nb.png";
        QTest::newRow("dash") << "-rf";
        QTest::newRow("wildcards") << "[a]*?.png";
        QTest::newRow("hidden") << ".a.png";
        QTest::newRow("wide letters") << QString::fromUtf8("Äpfel – größer.png");
    }

  private Q_SLOTS:
    void init()
    {
        m_trash.clear();
        m_home = std::make_unique<ScratchHome>();
        m_current.clear();
        m_menu.clear();
        m_steps.clear();
        m_boxes.clear();
        m_questions.clear();
        m_answer = platform::BoxAnswer::Yes;
        m_files = std::make_unique<FileOperations>(FileOperations::Sinks{
            .currentFile = [this] { return m_current; },
            .fileOfMenu = [this] { return m_menu; },
            .closeImage =
                [this] {
                    m_steps.append("close");
                    m_current.clear();
                },
            .refresh = [this] { m_steps.append("refresh"); },
            .next = [this] { m_steps.append("next"); },
            .openX = [this](const QString& path) { m_steps.append("open " + path); },
            .renamed = [this](const QString& before,
                              const QString& after) { m_steps.append("renamed " + before + " to " + after); },
            .refreshStripEntry = [this](const QString& path) { m_steps.append("entry " + path); }});
    }

    void cleanup() { m_home.reset(); } // before the next one is made

    void deleting_data() { addNames(); }
    void deleting()
    {
        QFETCH(QString, name);
        m_current = write(name);
        write("other.png");
        m_files->deleteCurrent();
        QVERIFY(!QFile::exists(in(name)));
        QVERIFY(QFile::exists(in("other.png")));
        QCOMPARE(m_trash.names(), QStringList{name});
        QCOMPARE(m_trash.content(name), name.toUtf8());
        QCOMPARE(m_steps, (QStringList{"close", "refresh", "next"}));
        QVERIFY(logTexts().isEmpty());
    }

    void whatIsNotThereIsNotDeleted_data()
    {
        QTest::addColumn<QString>("path");
        QTest::newRow("none") << "";
        QTest::newRow("missing") << "missing.png";
        QTest::newRow("the folder has gone") << "/nowhere/at/all/a.png";
        QTest::newRow("a directory") << ".";
        QTest::newRow("4,000 letters") << "/" + QString(4000, u'x');
        QTest::newRow("zero character") << QString("a.png") + QChar(0);
        QTest::newRow("wildcards") << "*.png";
    }
    void whatIsNotThereIsNotDeleted()
    {
        QFETCH(QString, path);
        write("a.png");
        if (!path.isEmpty() && !path.startsWith(u'/'))
            path = in(path);
        m_current = m_menu = path;
        m_files->deleteCurrent();
        m_files->deleteOfStrip();
        rename("b.png");
        QVERIFY(QFile::exists(in("a.png")));
        QVERIFY(m_trash.names().isEmpty());
        QVERIFY(m_steps.isEmpty() && m_questions.empty());
    }

    void aNameThatIsNoTextIsLeftAlone()
    {
        const QByteArray bytes = QFile::encodeName(in("a")) + "\xff.png";
        write("other.png");
        const int file = ::creat(bytes.constData(), 0600);
        QVERIFY(file >= 0);
        ::close(file);
        m_current = QString::fromLocal8Bit(bytes);
        m_files->deleteCurrent();
        rename("b.png");
        struct stat status = {};
        QCOMPARE(::stat(bytes.constData(), &status), 0);
        QCOMPARE(::unlink(bytes.constData()), 0);
        QVERIFY(QFile::exists(in("other.png")));
    }

    void whatCannotGoStays_data()
    {
        QTest::addColumn<bool>("readOnly");
        QTest::addColumn<QString>("why");
        QTest::newRow("read-only") << true << "A read-only file cannot be deleted";
        QTest::newRow("no trash") << false << "";
    }
    void whatCannotGoStays()
    {
        QFETCH(bool, readOnly);
        QFETCH(QString, why);
        m_current = write("a.png");
        std::optional<ScratchTrash::Closed> closed;
        if (readOnly)
            QCOMPARE(::chmod(QFile::encodeName(m_current).constData(), 0444), 0);
        else
            closed.emplace(m_trash);
        m_files->deleteCurrent();
        QVERIFY(QFile::exists(in("a.png")));
        QCOMPARE(logTexts().size(), 1);
        QVERIFY(logTexts().at(0).startsWith("Not deleted: " + in("a.png") + ": " + why));
        QCOMPARE(m_steps, (QStringList{"close", "refresh", "next"})); // the steps go on
    }

    void aLinkGoesItself()
    {
        const QString path = write("far.png");
        QCOMPARE(::chmod(QFile::encodeName(path).constData(), 0444), 0);
        m_current = in("link.png");
        QVERIFY(QFile::link(path, m_current));
        m_files->deleteCurrent();
        QVERIFY(!QFileInfo(in("link.png")).isSymLink());
        QVERIFY(QFile::exists(path));
        QCOMPARE(m_trash.names(), QStringList{"link.png"});
    }

    void deletingFromTheStrip()
    {
        m_current = write("a.png");
        m_menu = write("b.png");
        m_files->deleteOfStrip();
        QCOMPARE(m_trash.names(), QStringList{"b.png"});
        QCOMPARE(m_steps, (QStringList{"refresh", "entry " + in("b.png")})); // the current one stays
        m_steps.clear();
        m_menu = m_current;
        m_files->deleteOfStrip();
        QCOMPARE(m_trash.names(), (QStringList{"a.png", "b.png"}));
        QCOMPARE(m_steps, (QStringList{"close", "refresh", "next", "entry " + in("a.png")}));
    }

    void renaming_data()
    {
        addNames();
        QTest::newRow("255 bytes") << QString(251, u'x') + ".png";
    }
    void renaming()
    {
        QFETCH(QString, name);
        m_current = write("old.bmp");
        rename(name);
        QCOMPARE(contentOf(in(name)), QByteArray("old.bmp"));
        QVERIFY(!QFile::exists(in("old.bmp")));
        QCOMPARE(m_questions.size(), std::size_t(1));
        QCOMPARE(m_questions[0].title, QString("Rename File"));
        QCOMPARE(m_questions[0].text, QString("Rename File to"));
        QCOMPARE(m_questions[0].answer, QString("old.bmp"));
        QCOMPARE(m_steps, (QStringList{"renamed " + in("old.bmp") + " to " + in(name), "refresh",
                                       "open " + in(name)}));
        QVERIFY(logTexts().isEmpty());
    }

    void theSameNameOrNone_data()
    {
        QTest::addColumn<QString>("typed");
        QTest::newRow("none") << "";
        QTest::newRow("the same") << "a.png";
    }
    void theSameNameOrNone()
    {
        QFETCH(QString, typed);
        m_current = write("a.png");
        rename(typed);
        QVERIFY(QFile::exists(in("a.png")));
        QVERIFY(m_steps.isEmpty() && m_boxes.empty());
    }

    void otherCaseIsAChange()
    {
        m_current = write("a.png");
        rename("A.png");
        QVERIFY(QFile::exists(in("A.png")) && !QFile::exists(in("a.png")));
        QVERIFY(m_boxes.empty());
    }

    void extensions_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
        QTest::addColumn<bool>("changes");
        QTest::newRow("none") << "a.jpg"
                              << "b.jpg" << false;
        QTest::newRow("case") << "a.jpg"
                              << "b.JPG" << true;
        QTest::newRow("another") << "a.jpg"
                                 << "a.png" << true;
        QTest::newRow("last three characters only") << "a.jpeg"
                                                    << "a.xpeg" << false;
        QTest::newRow("short") << "ab"
                               << "cd" << true;
    }
    void extensions()
    {
        QFETCH(QString, before);
        QFETCH(QString, after);
        QTEST(commands::changesExtension(before, after), "changes");
    }

    void anotherExtensionIsAskedAbout_data()
    {
        QTest::addColumn<platform::BoxAnswer>("answer");
        QTest::newRow("yes") << platform::BoxAnswer::Yes;
        QTest::newRow("no") << platform::BoxAnswer::No;
        QTest::newRow("cancel") << platform::BoxAnswer::Cancel;
    }
    void anotherExtensionIsAskedAbout()
    {
        QFETCH(platform::BoxAnswer, answer);
        m_answer = answer;
        m_current = write("a.jpg");
        rename("b.JPG");
        QCOMPARE(m_boxes.size(), std::size_t(1));
        QCOMPARE(m_boxes[0].title, QString("Change Extension?"));
        QCOMPARE(m_boxes[0].text,
                 QString("Are you sure you wish change the file extension?\n\nDoing so might "
                         "cause problems with opening the file..."));
        QVERIFY(m_boxes[0].buttons == platform::BoxButtons::YesNoCancel);
        QCOMPARE(QFile::exists(in("b.JPG")), answer == platform::BoxAnswer::Yes);
        QCOMPARE(m_steps.isEmpty(), answer != platform::BoxAnswer::Yes);
    }

    void noFileIsReplaced()
    {
        m_current = write("a.png");
        write("b.png");
        rename("b.png");
        QCOMPARE(contentOf(in("a.png")), QByteArray("a.png"));
        QCOMPARE(contentOf(in("b.png")), QByteArray("b.png"));
        QVERIFY(m_steps.isEmpty());
        QCOMPARE(logTexts().size(), 1);
        QVERIFY(logTexts().at(0).startsWith("Not renamed: " + in("a.png") + " to b.png: "));
    }

    void aReadOnlyFileMayBeRenamed()
    {
        m_current = write("a.png");
        QCOMPARE(::chmod(QFile::encodeName(m_current).constData(), 0444), 0);
        rename("b.png");
        QVERIFY(QFile::exists(in("b.png")));
    }
};

QTEST_GUILESS_MAIN(TestFileOperations)
#include "tst_fileoperations.moc"

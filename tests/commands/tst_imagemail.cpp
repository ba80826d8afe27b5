// Sending the current image: what is attached, what the tool is told, and whom the file is for.
#include "app/Product.h"
#include "app/Settings.h"
#include "commands/ImageMail.h"
#include "commands/SaverBench.h"
#include "platform/Dialogs.h"
#include "support/FullDisk.h"

#include <QRegularExpression>
#include <QTest>

#include <sys/stat.h>

using namespace quorvia;
using namespace quorvia::test;
using commands::ImageMail;

class TestImageMail : public QObject
{
    Q_OBJECT

  private:
    ScratchTrash m_trash;
    std::unique_ptr<SaverBench> m_bench;
    QString m_tool;
    QStringList m_started;
    platform::ShellCode m_code = platform::ShellCode::Ok;
    platform::BoxAnswer m_answer = platform::BoxAnswer::Yes;
    std::vector<platform::MessageBox> m_boxes;

    QString converted() const { return app::InstallPath() + "qo_sendimage.jpg"; }
    QString attachment() const { return m_started.value(3); }
    void send()
    {
        const platform::MessageBoxAnswerer box([this](const platform::MessageBox& shown) {
            m_boxes.push_back(shown);
            return m_answer;
        });
        ImageMail({.ix1 = &m_bench->ix1,
                   .toolPath = [this] { return m_tool; },
                   .start =
                       [this](const QString& program, const QStringList& arguments) {
                           m_started = QStringList{program} + arguments;
                           return m_code;
                       }})
            .send();
    }

  private Q_SLOTS:
    void init()
    {
        m_bench = std::make_unique<SaverBench>(m_trash);
        m_tool = m_bench->home.write("postrel", "tool");
        m_started.clear();
        m_boxes.clear();
        m_code = platform::ShellCode::Ok;
        m_answer = platform::BoxAnswer::Yes;
    }
    void cleanup() { m_bench.reset(); }

    void withoutTheTool_data()
    {
        QTest::addColumn<QString>("tool");
        QTest::newRow("unknown") << "";
        QTest::newRow("gone") << "/nowhere/postrel";
    }
    void withoutTheTool()
    {
        QFETCH(QString, tool);
        m_tool = tool;
        m_bench->open("a.jpg");
        send();
        QCOMPARE(m_boxes.size(), std::size_t(1));
        QCOMPARE(m_boxes[0].text, QString("Error: E-Mail application could not be found..."));
        QVERIFY(m_started.isEmpty());
    }

    void aJpegGoesAsItIs_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("plain") << "a.jpg";
        QTest::newRow("in capitals") << "a.JPG";
        QTest::newRow("blanks and quotes") << "a \"b' c.jpg";
        QTest::newRow("like a switch") << "-a /subject.jpg";
        QTest::newRow("newline and percent") << "a\n%1.jpg";
    }
    void aJpegGoesAsItIs()
    {
        QFETCH(QString, name);
        name.replace(u'/', u'_');
        const QString path = m_bench->open(name);
        send();
        QVERIFY(m_boxes.empty());
        QCOMPARE(m_started,
                 (QStringList{m_tool, "/subject:Image (" + name + ")",
                              "/hiddenbody:" + commands::promotionalLine(), "/attachments:" + path}));
        QVERIFY(!QFile::exists(converted()));
        QVERIFY(logTexts().isEmpty());
    }

    void thePromotionalLine()
    {
        const QRegularExpression form("\\A<BRX><BRX>- [^<>\n]*Quorvia[^<>\n]*https://\\S+\\z");
        QVERIFY2(form.match(commands::promotionalLine()).hasMatch(), qPrintable(commands::promotionalLine()));
    }

    void anotherTypeIsAskedAbout_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<bool>("converts");
        QTest::newRow("no") << "a.png" << false;
        QTest::newRow("yes") << "a.png" << true;
        QTest::newRow("jpeg, yes") << "a.jpeg" << true; // the extension is another one
    }
    void anotherTypeIsAskedAbout()
    {
        QFETCH(QString, name);
        QFETCH(bool, converts);
        m_answer = converts ? platform::BoxAnswer::Yes : platform::BoxAnswer::No;
        const QString path = m_bench->open(name, {80, 60});
        m_bench->ix1.Rotate(90); // what is on show is sent, and stays as it is
        send();
        QCOMPARE(m_boxes.size(), std::size_t(1));
        QCOMPARE(m_boxes[0].text, QString("Would you like convert this image to the JPEG format?"));
        QVERIFY(m_boxes[0].buttons == platform::BoxButtons::YesNo);
        QCOMPARE(m_started.value(1), "/subject:Image (" + name + ")");
        QCOMPARE(attachment(), "/attachments:" + (converts ? converted() : path));
        QCOMPARE(QFile::exists(converted()), converts);
        QCOMPARE(m_bench->ix1.FileName(), path);
        if (!converts)
            return;
        QVERIFY(contentOf(converted()).startsWith("\xff\xd8\xff"));
        QCOMPARE(QImage(converted()).size(), QSize(60, 80));
        m_bench->ix1.SetJPEGGrayscale(true);
        QVERIFY(!m_bench->ix1.SaveFile()); // no name for a save is left behind
    }

    void anotherImageThatCameMeanwhileIsNotSent()
    {
        const QString other = m_bench->picture("b.png");
        m_bench->open("a.png");
        const platform::MessageBoxAnswerer box([&](const platform::MessageBox&) {
            m_bench->ix1.SetFileName(other);
            return platform::BoxAnswer::Yes;
        });
        ImageMail({.ix1 = &m_bench->ix1,
                   .toolPath = [this] { return m_tool; },
                   .start =
                       [this](const QString& program, const QStringList&) {
                           m_started = QStringList{program};
                           return m_code;
                       }})
            .send();
        QVERIFY(m_started.isEmpty());
        QVERIFY(!QFile::exists(converted()));
        QCOMPARE(logTexts().size(), 1);
        QVERIFY(logTexts().constFirst().startsWith("Not sent, since another image was opened meanwhile: "));
    }

    void theJpegIsMadeAsTheSettingsSay()
    {
        m_bench->open("a.png");
        app::save(app::setting::JPEGGray, 1);
        send();
        QVERIFY(QImage(converted()).allGray());
    }

    void theJpegIsForTheUserAlone()
    {
        m_bench->open("a.png");
        const mode_t before = ::umask(0);
        send();
        ::umask(before);
        struct stat status = {};
        QCOMPARE(::stat(QFile::encodeName(converted()).constData(), &status), 0);
        QCOMPARE(status.st_mode & 07777U, 0600U);
    }

    void theOneBeforeIsReplaced_data()
    {
        QTest::addColumn<bool>("isLink");
        QTest::newRow("a file that all may read") << false;
        QTest::newRow("a link") << true;
    }
    void theOneBeforeIsReplaced()
    {
        QFETCH(bool, isLink);
        m_bench->open("a.png");
        const QString other = m_bench->home.write("other", "must stay");
        QVERIFY(QDir().mkpath(app::InstallPath()));
        if (isLink)
            QVERIFY(QFile::link(other, converted()));
        else
            QVERIFY(QFile::copy(other, converted()));
        send();
        QVERIFY(!QFileInfo(converted()).isSymLink());
        QVERIFY(contentOf(converted()).startsWith("\xff\xd8\xff"));
        struct stat status = {};
        QCOMPARE(::stat(QFile::encodeName(converted()).constData(), &status), 0);
        QCOMPARE(status.st_mode & 07777U, 0600U);
        QCOMPARE(contentOf(other), QByteArray("must stay"));
        QVERIFY(m_trash.names().isEmpty());
    }

    void whatCannotBeConvertedGoesAsItIs_data()
    {
        QTest::addColumn<bool>("diskIsFull");
        QTest::newRow("a full disk") << true;
        QTest::newRow("a directory in its place") << false;
    }
    void whatCannotBeConvertedGoesAsItIs()
    {
        QFETCH(bool, diskIsFull);
        const QString path = m_bench->open("a.png", {800, 600});
        std::optional<FullDisk> disk;
        if (diskIsFull)
            disk.emplace(1000);
        else
            QVERIFY(QDir().mkpath(converted()));
        send();
        disk.reset();
        QCOMPARE(attachment(), "/attachments:" + path);
        QVERIFY(!QFileInfo(converted()).isFile());
        QCOMPARE(logTexts().size(), 1);
        QVERIFY(logTexts().at(0).startsWith("Not converted for a mail: "));
    }

    void withoutAFileNothingIsSent()
    {
        send();
        m_bench->ix1.SetPicture(quarters());
        send();
        const QString path = m_bench->open("a.png");
        QVERIFY(QFile::remove(path));
        send();
        QVERIFY(m_started.isEmpty() && m_boxes.empty());
    }

    void aToolThatDoesNotStartIsLogged()
    {
        m_code = platform::ShellCode::AccessDenied;
        m_bench->open("a.jpg");
        send();
        QCOMPARE(logTexts().size(), 1);
        QVERIFY(logTexts().at(0).startsWith("Not started: " + m_tool + ": "));
    }
};

QTEST_MAIN(TestImageMail)
#include "tst_imagemail.moc"

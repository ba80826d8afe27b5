// The file commands in the main window: delete, rename and send, from the command to list, strip and disk.
#include "app/Paths.h"
#include "app/Settings.h"
#include "collections/Filmstrip.h"
#include "collections/PlaylistKeeper.h"
#include "controls/gnTab.h"
#include "platform/ToolControl.h"
#include "platform/ToolMenu.h"
#include "support/FileContent.h"
#include "support/OddNames.h"
#include "viewer/CommandStage.h"

#include <QTest>
#include <QTimer>

#include <sys/stat.h>

using namespace quorvia;
using test::contentOf;
using test::ViewerBench;
using viewer::frmImageView;

namespace {

constexpr int rightButton = 2;

} // namespace

class TestWindowFiles : public QObject, private test::CommandStage
{
    Q_OBJECT

  private:
    QStringList listed() const { return m_window->list()->files(); }
    QString tab() const { return m_window->panes()->gTab()->tabs().at(1).Caption; }
    frmImageView& open(const char* path = "pics") { return show({in(path)}); }
    /// A window with the playlist of `names` (in the home) in front, the first of them on show.
    void openPlaylist(const QStringList& names)
    {
        QStringList lines;
        for (const QString& name : names)
            lines.append(m_bench->home.path(name));
        m_bench->home.write(QStringLiteral("root/Playlist/L.qol"), lines.join("\r\n").toUtf8());
        m_window = &m_bench->load();
        m_window->OpenMenuX(true);
        m_window->OpenX(in("root/Playlist/L.qol"));
        m_window->list()->finishRebuild();
        run("miNext");
    }
    /// Runs miRename and types `name`.
    void rename(const QString& name) const
    {
        const platform::TextQuestionAnswerer question(
            [&name](const platform::TextQuestion&) { return name; });
        run("miRename");
    }
    bool stripSettles() const
    {
        const auto* const strip = m_window->filmstrip()->Filmstrip1();
        return QTest::qWaitFor(
            [strip] {
                return !strip->findChild<QTimer*>(QStringLiteral("tResize"))->isActive() &&
                       !strip->findChild<QTimer*>(QStringLiteral("tDraw"))->isActive() &&
                       !strip->findChild<QTimer*>(QStringLiteral("tSelectionChange"))->isActive();
            },
            10000);
    }

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void deleting()
    {
        open();
        run("miNext");
        QCOMPARE(m_window->currentFile(), in("pics/b.png"));
        run("miDelete");
        QVERIFY(!QFile::exists(in("pics/b.png")));
        QCOMPARE(m_trash.names(), QStringList{"b.png"});
        QCOMPARE(listed(), (QStringList{in("pics/a.png"), in("pics/two words.png")}));
        QCOMPARE(m_window->currentFile(), in("pics/a.png")); // without an image the next one is the first
        QCOMPARE(m_bench->middle(), QColor(Qt::red));
        QVERIFY(m_bench->boxes.empty() && failures().isEmpty());
    }

    void deletingTheFirst()
    {
        open();
        run("miDelete");
        QCOMPARE(m_window->currentFile(), in("pics/b.png"));
        QVERIFY(m_bench->boxes.empty());
    }

    void deletingTheLast()
    {
        m_bench->picture(QStringLiteral("one/a.png"), Qt::red);
        open("one");
        QCOMPARE(m_window->currentFile(), in("one/a.png"));
        run("miDelete");
        QVERIFY(m_trash.names() == QStringList{"a.png"});
        QVERIFY(listed().isEmpty());
        QCOMPARE(m_window->currentFile(), QString());
        QCOMPARE(m_window->ix1()->ImagePixelWidth(), 0);
        QCOMPARE(tab(), QStringLiteral("Unknown"));
        QVERIFY(m_bench->middle() != QColor(Qt::red));
        QVERIFY(!m_window->panes()->ab1()->model()->tool(QStringLiteral("miDelete"))->values().enabled);
        QVERIFY(!m_window->panes()->pWelcome()->isHidden());
        QVERIFY(m_bench->boxes.empty());
        run("miDelete"); // there is none any more
        QCOMPARE(m_trash.names().size(), 1);
    }

    void deletingInAPlaylist()
    {
        openPlaylist({"pics/a.png", "pics/b.png"});
        QCOMPARE(m_window->currentFile(), in("pics/a.png"));
        run("miDelete");
        QCOMPARE(m_trash.names(), QStringList{"a.png"});
        QCOMPARE(m_window->currentFile(), in("pics/b.png"));
        QVERIFY(m_bench->boxes.empty()); // nobody is told that a.png is not there
        run("miDelete");
        QCOMPARE(m_trash.names(), (QStringList{"a.png", "b.png"}));
        QCOMPARE(m_window->currentFile(), QString());
        QVERIFY(m_bench->boxes.empty());
    }

    void whatCannotBeDeletedStays_data()
    {
        QTest::addColumn<bool>("readOnly");
        QTest::newRow("read-only") << true;
        QTest::newRow("no trash") << false;
    }

    void whatCannotBeDeletedStays()
    {
        QFETCH(bool, readOnly);
        open();
        run("miNext");
        std::optional<test::ScratchTrash::Closed> closed;
        if (readOnly)
            QCOMPARE(::chmod(QFile::encodeName(in("pics/b.png")).constData(), 0444), 0);
        else
            closed.emplace(m_trash);
        run("miDelete");
        QVERIFY(QFile::exists(in("pics/b.png")));
        QCOMPARE(listed().size(), 3);
        QCOMPARE(failures().size(), 1);
        QCOMPARE(m_window->currentFile(), in("pics/a.png")); // the steps go on
        QVERIFY(m_bench->boxes.empty());
    }

    void deletingFromTheStrip_data()
    {
        QTest::addColumn<int>("index");
        QTest::addColumn<QString>("current");
        QTest::newRow("another one") << 1 << "pics/a.png";
        QTest::newRow("the one on show") << 0 << "pics/b.png";
    }

    void deletingFromTheStrip()
    {
        QFETCH(int, index);
        QFETCH(QString, current);
        open();
        m_window->resize(900, 700);
        run("miViewFilmstrip");
        QVERIFY(stripSettles());
        collections::Filmstrip& strip = *m_window->filmstrip()->Filmstrip1();
        const QString file = strip.Images().at(index);
        Q_EMIT strip.ImageClicked(index, rightButton, 0);
        m_window->panes()->ab1()->menus()->close();
        run("miThumbDelete");
        QVERIFY(!QFile::exists(file));
        QCOMPARE(m_trash.names(), QStringList{file.section(u'/', -1)});
        QCOMPARE(strip.Images().size(), 2);
        QVERIFY(!strip.Images().contains(file));
        QCOMPARE(m_window->currentFile(), m_bench->home.path(current));
        QVERIFY(m_bench->boxes.empty() && failures().isEmpty());
        run("miThumbDelete"); // it has gone
        QCOMPARE(m_trash.names().size(), 1);
    }

    void theStripOfAPlaylistShowsThatAFileHasGone()
    {
        openPlaylist({"pics/a.png", "pics/b.png", "pics/two words.png"});
        m_window->resize(900, 700);
        run("miViewFilmstrip");
        if (!m_window->panes()->isFilmstripShown())
            run("miInterfaceTabs");
        QVERIFY(stripSettles());
        collections::Filmstrip& strip = *m_window->filmstrip()->Filmstrip1();
        auto* const pImages = strip.findChild<QWidget*>(QStringLiteral("pImages"));
        const auto cell = [pImages] {
            const QImage shot = pImages->grab().toImage();
            return shot.pixelColor(shot.width() / 2, shot.height() / 2); // of three the second
        };
        QTRY_VERIFY(cell().green() > 200 && cell().red() < 60);
        Q_EMIT strip.ImageClicked(1, rightButton, 0);
        m_window->panes()->ab1()->menus()->close();
        run("miThumbDelete");
        QVERIFY(stripSettles());
        QTRY_VERIFY(cell().green() < 200 || cell().red() > 60);
    }

    void renaming()
    {
        open();
        run("miNext");
        rename(QStringLiteral("c.png"));
        QVERIFY(!QFile::exists(in("pics/b.png")) && QFile::exists(in("pics/c.png")));
        QCOMPARE(m_window->currentFile(), in("pics/c.png"));
        QCOMPARE(m_bench->middle(), QColor(Qt::green));
        QCOMPARE(tab(), QStringLiteral("c.png"));
        m_window->list()->finishRebuild();
        QCOMPARE(listed(), (QStringList{in("pics/a.png"), in("pics/c.png"), in("pics/two words.png")}));
        QVERIFY(m_bench->boxes.empty() && failures().isEmpty());
        rename(QStringLiteral("C.png")); // another name, though in case alone
        QCOMPARE(m_window->currentFile(), in("pics/C.png"));
        QVERIFY(m_bench->boxes.empty());
    }

    void renamingInAPlaylist()
    {
        openPlaylist({"pics/a.png", "pics/b.png"});
        rename(QStringLiteral("x.png"));
        QCOMPARE(m_window->currentFile(), in("pics/x.png"));
        m_window->list()->finishRebuild();
        QCOMPARE(listed(), (QStringList{in("pics/x.png"), in("pics/b.png")}));
        m_bench->close();
        QVERIFY(contentOf(in("root/Playlist/L.qol")).contains(in("pics/x.png").toUtf8()));
        QVERIFY(!contentOf(in("root/Playlist/L.qol")).contains(in("pics/a.png").toUtf8()));
    }

    void otherExtensionsAreAskedAbout()
    {
        open();
        rename(QStringLiteral("a.PNG")); // the bench answers Ok, which is no yes
        QCOMPARE(m_bench->boxes.size(), std::size_t(1));
        QCOMPARE(m_bench->boxes[0].title, QStringLiteral("Change Extension?"));
        QVERIFY(QFile::exists(in("pics/a.png")));
        QCOMPARE(m_window->currentFile(), in("pics/a.png"));
    }

    void noFileIsReplacedByARename()
    {
        open();
        const QByteArray b = contentOf(in("pics/b.png"));
        rename(QStringLiteral("b.png"));
        QCOMPARE(contentOf(in("pics/b.png")), b);
        QVERIFY(QFile::exists(in("pics/a.png")));
        QCOMPARE(m_window->currentFile(), in("pics/a.png"));
        QCOMPARE(failures().size(), 1);
    }

    void names_data() { test::addOddNames(); }

    void names()
    {
        QFETCH(QString, name);
        open();
        rename(name);
        const QString path = in("pics/") + name;
        QCOMPARE(m_window->currentFile(), path);
        run("miRotateClock");
        QCOMPARE(QImage(path).size(), QSize(30, 40));
        run("miDelete");
        QVERIFY(!QFile::exists(path));
        QVERIFY(m_trash.names().contains(name));
        QVERIFY(m_bench->boxes.empty() && failures().isEmpty());
    }

    void aFolderThatHasGone()
    {
        open();
        QVERIFY(QDir(in("pics")).removeRecursively());
        const QString before = m_window->windowTitle();
        for (const char* command : {"miDelete", "miThumbDelete", "miRename", "miEmailImage"})
            run(command);
        QCOMPARE(m_bench->boxes.size(), std::size_t(1)); // there is no tool for mail
        run("miRotateClock"); // cannot be written, and there is nothing to be read again
        QVERIFY(!QFile::exists(in("pics/a.png")));
        QCOMPARE(m_window->ix1()->ImagePixelWidth(), 30);
        QCOMPARE(m_window->windowTitle(), before);
        QCOMPARE(failures().size(), 1);
    }

    void sending()
    {
        open();
        run("miEmailImage");
        QCOMPARE(m_bench->boxes.size(), std::size_t(1));
        QCOMPARE(m_bench->boxes[0].text, QStringLiteral("Error: E-Mail application could not be found..."));
        const QString told = in("told");
        const QString tool =
            m_bench->home.write(QStringLiteral("bin/postrel"),
                                "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + told.toUtf8() + ".part' && mv '" +
                                    told.toUtf8() + ".part' '" + told.toUtf8() + "'\n");
        QCOMPARE(::chmod(QFile::encodeName(tool).constData(), 0755), 0);
        app::saveOfTool(app::common::ProgramPaths, QStringLiteral("postrel"), tool);
        run("miEmailImage"); // the bench answers Ok, which is no yes
        QCOMPARE(m_bench->boxes.back().text,
                 QStringLiteral("Would you like convert this image to the JPEG format?"));
        QTRY_VERIFY(QFile::exists(told));
        const QStringList arguments = QString::fromUtf8(contentOf(told)).split(u'\n');
        QCOMPARE(arguments.size(), 4);
        QCOMPARE(arguments.at(0), QStringLiteral("/subject:Image (a.png)"));
        QVERIFY(arguments.at(1).startsWith(QLatin1String("/hiddenbody:<BRX><BRX>- ")));
        QCOMPARE(arguments.at(2), "/attachments:" + in("pics/a.png"));
    }
};

QTEST_MAIN(TestWindowFiles)
#include "tst_windowfiles.moc"

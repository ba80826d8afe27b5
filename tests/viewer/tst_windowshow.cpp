// The list and the slideshow in the main window: what a step opens, what an order does, what vanishes
// meanwhile.
#include "app/Settings.h"
#include "platform/ToolControl.h"
#include "viewer/PictureStage.h"

#include <QDialog>
#include <QFile>
#include <QSet>
#include <QTest>
#include <QTimer>

using namespace quorvia;
using viewer::frmImageView;
namespace setting = app::setting;

class TestWindowShow : public QObject, private test::PictureStage
{
    Q_OBJECT

  private:
    static void run(frmImageView& window, const char* command) { window.RunTool(QLatin1String(command)); }
    /// A show over `arguments` whose timer ticks only by tick().
    frmImageView& showing(const QStringList& arguments, const char* order)
    {
        constexpr int longerThanTheTest = 1000 * 1000;
        app::save(setting::Interval, longerThanTheTest);
        frmImageView& window = m_bench->load(arguments);
        run(window, order);
        return window;
    }
    static void tick(frmImageView& window)
    {
        Q_EMIT window.findChild<QTimer*>(QStringLiteral("tSlide"))->timeout({});
    }
    void remove(const QStringList& names) const
    {
        for (const QString& name : names)
            QVERIFY(QFile::remove(in("pics/") + name));
    }
    static void orders()
    {
        QTest::addColumn<QString>("order");
        QTest::addColumn<QString>("mode");
        QTest::newRow("advance") << "tSldAdvance"
                                 << "advance";
        QTest::newRow("reverse") << "tSldReverse"
                                 << "reverse";
        QTest::newRow("random") << "tSldRandom"
                                << "random";
    }

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }

    void anOrderStartsAShow_data() { orders(); }
    void anOrderStartsAShow()
    {
        QFETCH(QString, order);
        QFETCH(QString, mode);
        app::save(setting::slidemode, QStringLiteral("sideways"));
        frmImageView& window = m_bench->load({in("pics")});
        const output::Slideshow& show = *window.slideshow();
        window.RunTool(order);
        QVERIFY(show.isRunning());
        QCOMPARE(show.slidemode(), mode);
        QCOMPARE(app::read(setting::slidemode), mode);
        window.RunTool(order);
        QVERIFY(show.isRunning());
        run(window, "miSlideShow");
        QVERIFY(!show.isRunning());
        QCOMPARE(show.slidemode(), mode);
    }

    void anEmptyListLeavesTheShowOn_data() { orders(); }
    void anEmptyListLeavesTheShowOn()
    {
        QFETCH(QString, order);
        frmImageView& window = showing({}, qPrintable(order));
        tick(window);
        QCOMPARE(window.currentFile(), QString());
        QCOMPARE(window.list()->ListIndex(), -1);
        QVERIFY(window.slideshow()->isRunning());
        QVERIFY(m_bench->boxes.empty());
    }

    void aDialogHoldsTheShow()
    {
        frmImageView& window = showing({in("pics")}, "tSldAdvance");
        const int index = window.list()->ListIndex();
        QDialog dialog(&window);
        dialog.setModal(true);
        dialog.show();
        tick(window); // what is asked is about the picture behind it
        QCOMPARE(window.list()->ListIndex(), index);
        dialog.close();
        tick(window);
        QVERIFY(window.list()->ListIndex() != index);
    }

    void advanceOpens_data()
    {
        QTest::addColumn<QStringList>("gone");
        QTest::addColumn<int>("from");
        QTest::addColumn<int>("to");
        const auto row = [](const char* name, const QStringList& gone, int from, int to) {
            QTest::newRow(name) << gone << from << to;
        };
        row("the next", {}, 0, 1);
        row("the one behind a gap", {"b.png"}, 0, 2);
        row("the first after the last", {}, 2, 0);
        row("the first that is there after the last", {"a.png"}, 2, 1);
        row("the first from no entry", {}, -1, 0);
        row("the first that is there from no entry", {"a.png"}, -1, 1);
        row("nothing when the others have gone", {"b.png", "two words.png"}, 0, 0);
        row("nothing when all have gone", {"a.png", "b.png", "two words.png"}, 1, 1);
    }

    void advanceOpens()
    {
        QFETCH(QStringList, gone);
        QFETCH(int, from);
        QFETCH(int, to);
        frmImageView& window = showing({in("pics")}, "tSldAdvance");
        window.list()->SetListIndex(from);
        remove(gone);
        const QString before = window.currentFile();
        const int opened = app::read(setting::ImageOpenCount);
        tick(window);
        QCOMPARE(window.list()->ListIndex(), to);
        // From no entry the first may be the picture on show already.
        const QString after = window.list()->ListFile(to);
        QCOMPARE(window.currentFile(), after);
        QCOMPARE(app::read(setting::ImageOpenCount), opened + (after == before ? 0 : 1));
        QVERIFY(window.slideshow()->isRunning());
        QVERIFY(m_bench->boxes.empty());
    }

    void oneEntryIsNotOpenedAgain()
    {
        remove({"b.png", "two words.png"});
        frmImageView& window = showing({in("pics")}, "tSldAdvance");
        const int opened = app::read(setting::ImageOpenCount);
        tick(window);
        QCOMPARE(window.list()->ListCount(), 1);
        QCOMPARE(window.list()->ListIndex(), 0);
        QCOMPARE(window.currentFile(), in("pics/a.png"));
        QCOMPARE(app::read(setting::ImageOpenCount), opened);
    }

    void reverseSelectsAndReportsAMissingFile()
    {
        frmImageView& window = showing({in("pics")}, "tSldReverse");
        window.list()->SetListIndex(2);
        remove({"b.png"});
        tick(window);
        QCOMPARE(window.list()->ListIndex(), 1);
        QCOMPARE(m_bench->boxes.size(), std::size_t(1));
        QCOMPARE(m_bench->boxes[0].title, QStringLiteral("File Opening Error"));
        QVERIFY(m_bench->boxes[0].text.contains(in("pics/b.png")));
        QCOMPARE(window.currentFile(), in("pics/two words.png"));
        QVERIFY(window.slideshow()->isRunning());
    }

    void randomFollowsTheClock()
    {
        frmImageView& window = showing({in("pics")}, "tSldRandom");
        QSet<int> places;
        QSet<int> distances; // a step to the next or back would always be the same
        const auto step = [&] {
            const int before = window.list()->ListIndex();
            tick(window);
            const int after = window.list()->ListIndex();
            places.insert(after);
            distances.insert((after - before + 3) % 3);
            return window.currentFile() == window.list()->ListFile(after);
        };
        bool opened = true;
        QTRY_VERIFY((opened = opened && step(), places.size() == 3 && distances.size() == 3));
        QVERIFY(opened);
        QCOMPARE(places, (QSet<int>{0, 1, 2}));
        QVERIFY(window.slideshow()->isRunning());
    }

    void theShowGoesOnInAHiddenWindow()
    {
        frmImageView& window = showing({in("pics")}, "miSlideShow");
        run(window, "miHide");
        QVERIFY(!window.isVisible());
        tick(window);
        QCOMPARE(window.currentFile(), in("pics/b.png"));
        QVERIFY(window.slideshow()->isRunning());
    }

    void aDamagedPictureCostsItselfOnly()
    {
        m_bench->home.write(QStringLiteral("pics/b.png"), "no picture");
        frmImageView& window = showing({in("pics")}, "miSlideShow");
        tick(window);
        QCOMPARE(window.list()->ListIndex(), 1);
        tick(window);
        QCOMPARE(window.currentFile(), in("pics/two words.png"));
        QTRY_COMPARE(m_bench->middle(), QColor(Qt::blue));
        QVERIFY(window.slideshow()->isRunning());
        QVERIFY(m_bench->boxes.empty());
    }

    void theToolsFollowEveryRebuild()
    {
        frmImageView& window = m_bench->load();
        window.OpenMenuX(true);
        const platform::Tool* const tool = window.panes()->ab1()->model()->tool(QStringLiteral("miNext"));
        QVERIFY(!tool->values().enabled);
        window.list()->setPath(in("pics"));
        window.list()->finishRebuild();
        QVERIFY(tool->values().enabled);
        remove({"a.png", "b.png", "two words.png"});
        window.list()->RefreshPlaylist();
        window.list()->finishRebuild();
        QVERIFY(!tool->values().enabled);
    }
};

QTEST_MAIN(TestWindowShow)
#include "tst_windowshow.moc"

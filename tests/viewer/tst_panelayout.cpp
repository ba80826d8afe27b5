#include "viewer/PaneLayout.h"

#include <QTest>

using namespace quorvia::viewer;

Q_DECLARE_METATYPE(TopState)
Q_DECLARE_METATYPE(TopPanes)
Q_DECLARE_METATYPE(std::optional<int>)

namespace {

TopState topState(TabPane pane, bool flag)
{
    TopState state;
    state.size = QSize(12000, 9000);
    state.windowWidth = 12000;
    state.listVisible = true;
    state.filebarHeight = 300;
    state.tabHeight = 330;
    state.splitterHeight = 90;
    state.informationHeight = 2000;
    state.filmstripHeight = 2500;
    state.captureHeight = 1800;
    state.pane = pane;
    state.interfaceFlag = flag;
    state.link = QSize(1500, 250);
    return state;
}

} // namespace

class TestPaneLayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void mains_data();
    void mains();
    void buttons_data();
    void buttons();
    void tops_data();
    void tops();
    void filebars_data();
    void filebars();
    void information();
    void splitters_data();
    void splitters();
    void fitsTheWindow();
};

void TestPaneLayout::mains_data()
{
    QTest::addColumn<QSize>("window");
    QTest::addColumn<QSize>("toolbar");
    QTest::addColumn<QRect>("place");
    QTest::addColumn<int>("rule");
    QTest::addColumn<QRect>("docking");
    QTest::newRow("centred") << QSize(12000, 9000) << QSize(4000, 500) << QRect(4000, 8500, 4000, 500) << 8490
                             << QRect(0, 0, 12000, 8480);
    QTest::newRow("wider than the window") << QSize(3000, 9000) << QSize(4000, 500)
                                           << QRect(0, 8500, 4000, 500) << 8490 << QRect(0, 0, 3000, 8480);
    QTest::newRow("no toolbar") << QSize(12000, 9000) << QSize(0, 0) << QRect(6000, 9000, 0, 0) << 8990
                                << QRect(0, 0, 12000, 8980);
    QTest::newRow("lower than the toolbar") << QSize(3000, 400) << QSize(1000, 500)
                                            << QRect(1000, -100, 1000, 500) << -110 << QRect(0, 0, 3000, 0);
}

void TestPaneLayout::mains()
{
    QFETCH(QSize, window);
    QFETCH(QSize, toolbar);
    const MainPanes panes = layoutMain(window, toolbar);
    QTEST(panes.toolbar, "place");
    QTEST(panes.rule, "rule");
    QTEST(panes.docking, "docking");
}

void TestPaneLayout::buttons_data()
{
    QTest::addColumn<int>("right");
    QTest::addColumn<std::optional<int>>("top");
    QTest::newRow("room") << 3849 << std::optional<int>(8540);
    QTest::newRow("just reaches") << 3850 << std::optional<int>();
    QTest::newRow("beyond") << 5000 << std::optional<int>();
}

void TestPaneLayout::buttons()
{
    QFETCH(int, right);
    QTEST(buttonTop(right, QRect(4000, 8500, 4000, 500)), "top");
}

void TestPaneLayout::tops_data()
{
    QTest::addColumn<TopState>("state");
    QTest::addColumn<TopPanes>("panes");
    TopPanes panes;
    panes.tabs = QRect(0, 0, 12000, 330);
    panes.link = QPoint(10400, (330 - 250) / 2);
    panes.viewport = QRect(0, 330, 12000, 8670);
    for (const TabPane pane : {TabPane::Image, TabPane::Information, TabPane::Filmstrip, TabPane::Capture})
        QTest::addRow("the viewport in front, pane %d", int(pane)) << topState(pane, true) << panes;
    QTest::newRow("image") << topState(TabPane::Image, false) << panes;

    TopPanes information = panes;
    information.viewport = QRect(0, 330, 12000, 9000 - 2000 - 330);
    information.information = QRect(0, 7000, 12000, 2000);
    QTest::newRow("information") << topState(TabPane::Information, false) << information;

    TopPanes filmstrip = panes;
    filmstrip.viewport = QRect(0, 330, 12000, 9000 - 2500 - 330 - 90);
    filmstrip.splitter = QRect(0, 6410, 12000, 90);
    filmstrip.filmstrip = QRect(0, 6500, 12000, 2500);
    QTest::newRow("filmstrip") << topState(TabPane::Filmstrip, false) << filmstrip;

    TopPanes capture = panes;
    capture.viewport = QRect(0, 330, 12000, 9000 - 1800 - 330);
    capture.capture = QRect(0, 7200, 12000, 1800);
    QTest::newRow("capture") << topState(TabPane::Capture, false) << capture;

    TopState strip = topState(TabPane::Filmstrip, false);
    strip.listVisible = false;
    TopPanes withStrip = filmstrip;
    withStrip.filebar = QRect(0, 0, 12000, 300);
    withStrip.tabs = QRect(0, 300, 12000, 330);
    withStrip.link = QPoint(10400, (300 - 250) / 2);
    withStrip.viewport = QRect(0, 630, 12000, 9000 - 2500 - 630 - 90);
    QTest::newRow("filmstrip below the strip") << strip << withStrip;

    TopState low = topState(TabPane::Filmstrip, false);
    low.filmstripHeight = 2147483647;
    TopPanes squeezed = panes;
    squeezed.viewport = QRect(0, 330, 12000, 100);
    squeezed.splitter = QRect(0, 430, 12000, 90);
    squeezed.filmstrip = QRect(0, 520, 12000, 9000 - 520);
    QTest::newRow("a strip of a higher window leaves the viewport its least") << low << squeezed;
    low.size.setHeight(400);
    squeezed.viewport = QRect(0, 330, 12000, 0);
    squeezed.splitter = QRect(0, 330, 12000, 90);
    squeezed.filmstrip = QRect(0, 420, 12000, 0);
    QTest::newRow("no room for anything") << low << squeezed;
}

void TestPaneLayout::tops()
{
    QFETCH(TopState, state);
    QFETCH(TopPanes, panes);
    const TopPanes got = layoutTop(state);
    QCOMPARE(got.filebar, panes.filebar);
    QCOMPARE(got.tabs, panes.tabs);
    QCOMPARE(got.viewport, panes.viewport);
    QCOMPARE(got.information, panes.information);
    QCOMPARE(got.splitter, panes.splitter);
    QCOMPARE(got.filmstrip, panes.filmstrip);
    QCOMPARE(got.capture, panes.capture);
    QCOMPARE(got.link, panes.link);
}

void TestPaneLayout::filebars_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<bool>("list");
    QTest::addColumn<int>("area");
    QTest::addColumn<bool>("shown");
    QTest::newRow("list beside the view") << 12000 << true << 0 << false;
    QTest::newRow("list on top") << 12000 << true << dockedOnTop << true;
    QTest::newRow("list hidden") << 12000 << false << 0 << true;
    QTest::newRow("list hidden, was on top") << 12000 << false << dockedOnTop << true;
    QTest::newRow("list afloat") << 12000 << true << 4 << false;
    QTest::newRow("just wide enough") << 8000 << false << 0 << true;
    QTest::newRow("narrow") << 7999 << false << 0 << false;
    QTest::newRow("narrow, list on top") << 7999 << true << dockedOnTop << false;
}

void TestPaneLayout::filebars()
{
    QFETCH(int, width);
    QFETCH(bool, list);
    QFETCH(int, area);
    TopState state = topState(TabPane::Image, true);
    state.windowWidth = width;
    state.listVisible = list;
    state.listArea = area;
    const TopPanes panes = layoutTop(state);
    QTEST(!panes.filebar.isNull(), "shown");
    QCOMPARE(panes.tabs.top(), panes.filebar.height());
}

void TestPaneLayout::information()
{
    QCOMPARE(layoutInside(QSize(12000, 2000)), QRect(40, 40, 11920, 1920));
    QCOMPARE(layoutInside(QSize(50, 50)), QRect(40, 40, 0, 0));
}

void TestPaneLayout::splitters_data()
{
    QTest::addColumn<int>("wanted");
    QTest::addColumn<int>("top");
    QTest::addColumn<int>("height");
    QTest::newRow("between") << 5000 << 5000 << 3910;
    QTest::newRow("upper limit") << 430 << 430 << 8480;
    QTest::newRow("beyond the upper limit") << -700 << 430 << 8480;
    QTest::newRow("lower limit") << 8000 << 8000 << 910;
    QTest::newRow("beyond the lower limit") << 9500 << 8000 << 910;
}

void TestPaneLayout::splitters()
{
    QFETCH(int, wanted);
    const int top = splitterTop(wanted, 330, 9000);
    QTEST(top, "top");
    QTEST(filmstripHeight(top, 90, 9000), "height");
    QCOMPARE(splitterTop(wanted, 330, 1200), 430); // a window too low for both limits
}

void TestPaneLayout::fitsTheWindow()
{
    QCOMPARE(windowForImage(QSize(9600, 7200), 500), QSize(9800, 8400));
}

QTEST_APPLESS_MAIN(TestPaneLayout)
#include "tst_panelayout.moc"

// What a tab strip looks like, pixel by pixel, and that it is painted at every change.
#include "controls/PaintCount.h"
#include "controls/TabBench.h"
#include "controls/TabMetrics.h"

#include <QTest>

#include <climits>
#include <functional>

using namespace quorvia::controls;
using namespace quorvia::test;

namespace {

/// What of a tab differs from the blue behind it: the ink of its caption.
struct Ink
{
    int pixels = 0;
    int left = INT_MAX;
    int right = -1;
    int longestRow = 0; ///< the most pixels in one row

    int width() const { return right - left + 1; }
};

Ink inkOf(const TabBench& bench, int index)
{
    const TabRecord& tab = bench.tab.tabs().at(index);
    const QImage image = bench.painted();
    const QRect surface = bench.surface()->geometry();
    Ink ink;
    for (int y = surface.top(); y <= surface.bottom(); ++y) {
        int row = 0;
        for (int x = tab.Left; x < tab.Left + tab.Width; ++x) {
            if (at(image, x, y) == blueColor)
                continue;
            ++row;
            ink.left = std::min(ink.left, x);
            ink.right = std::max(ink.right, x);
        }
        ink.pixels += row;
        ink.longestRow = std::max(ink.longestRow, row);
    }
    return ink;
}

/// Whether a tab shows a pixel of exactly this colour.
bool shows(const TabBench& bench, int index, const QColor& color)
{
    const TabRecord& tab = bench.tab.tabs().at(index);
    const QImage image = bench.painted().copy(QRect(tab.Left, 3, tab.Width, bench.surface()->height()));
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (at(image, x, y) == color)
                return true;
        }
    }
    return false;
}

/// The ink of the captions is all that there is to see on such a strip: black on blue everywhere.
void makeBlue(gnTab& tab)
{
    tab.SetBackColor(blue);
    tab.SetActiveTabBackColor(blue);
    tab.SetSelectedTabHoverColor(blue);
    tab.SetTabBorderType(0);
    tab.SetTabTextColor(0);
    tab.SetActiveTabTextColor(0);
    tab.SetHoverColour(0);
    tab.SetSeperatorLineColor(blue);
}

const QString solid = QStringLiteral("████"); // a caption with whole pixels of its colour

} // namespace

class TestGnTabPaint : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void colorsTheBars();
    void paintsBoxes();
    void paintsCaptions_data();
    void paintsCaptions();
    void paintsTheSelectedCaptionBold();
    void underlinesTheHoveredCaption();
    void paintsEveryLetter();
    void paintsInItsColors_data();
    void paintsInItsColors();
    void paintsInTheDesktopsColors_data();
    void paintsInTheDesktopsColors();
    void paintsItsSurroundingsInTheDesktopsColors();
    void tabBackColorPaintsNothing();
    void paintsEveryChange_data();
    void paintsEveryChange();
    void paintsItsOwnBackAnew();
    void paintsAnEdge_data();
    void paintsAnEdge();
    void paintsSeparators_data();
    void paintsSeparators();
};

void TestGnTabPaint::colorsTheBars()
{
    TabBench bench;
    bench.tab.SetBackColor(blue);
    bench.tab.SetActiveTabBackColor(white);
    QImage image = bench.painted();
    QCOMPARE(at(image, 400, 0), blueColor);
    QCOMPARE(at(image, 400, 2), blueColor);
    QCOMPARE(at(image, 400, 15), blueColor); // beside the tabs
    QCOMPARE(at(image, 400, 26), QColor(Qt::white));
    QCOMPARE(at(image, 400, 28), QColor(Qt::white));
    bench.tab.SetAllignBottom(true);
    image = bench.painted();
    QCOMPARE(at(image, 400, 2), QColor(Qt::white));
    QCOMPARE(at(image, 400, 26), blueColor);
}

void TestGnTabPaint::paintsBoxes()
{
    TabBench bench;
    bench.tab.SetBackColor(blue);
    bench.tab.SetActiveTabBackColor(0x0000FF);
    bench.tab.SetSelectedTabHoverColor(0x00FF00);
    const int x = bench.tab.tabs().at(1).Left;
    QImage image = bench.painted();
    QCOMPARE(at(image, x, 3 + 3), blueColor);
    QCOMPARE(at(image, x, 3 + 4), QColor(Qt::red));
    QCOMPARE(at(image, x, 28), QColor(Qt::red));
    QCOMPARE(at(image, x - 1, 10), blueColor);
    QCOMPARE(at(image, bench.tab.tabs().at(2).Left, 10), blueColor);
    bench.tab.SetTabBorderType(0);
    bench.moveTo(bench.middleOf(1));
    image = bench.painted();
    QCOMPARE(at(image, x, 3 + 4), QColor(Qt::green));
    QCOMPARE(at(image, x, 28), QColor(Qt::red)); // the bar
    bench.tab.SetAllignBottom(true);
    image = bench.painted();
    QCOMPARE(at(image, x, 0), QColor(Qt::red)); // the bar
    QCOMPARE(at(image, x, 3), QColor(Qt::green));
}

void TestGnTabPaint::paintsAnEdge_data()
{
    // Of the two rings: lighter or darker than the box, or the same.
    QTest::addColumn<int>("borderType");
    QTest::addColumn<QString>("outerNear"); // left and top
    QTest::addColumn<QString>("outerFar");  // right and bottom
    QTest::addColumn<QString>("innerNear");
    QTest::addColumn<QString>("innerFar");
    const auto row = [](const char* name, int type, const char* outerNear, const char* outerFar,
                        const char* innerNear, const char* innerFar) {
        QTest::newRow(name) << type << outerNear << outerFar << innerNear << innerFar;
    };
    row("none", 0, "same", "same", "same", "same");
    row("raised", 1, "lighter", "darker", "lighter", "darker");
    row("sunken", 2, "darker", "lighter", "darker", "lighter");
    row("bump", 3, "lighter", "darker", "darker", "lighter");
    row("etched", 4, "darker", "lighter", "lighter", "darker");
    row("raised inside", 5, "lighter", "darker", "same", "same");
}

void TestGnTabPaint::paintsAnEdge()
{
    QFETCH(int, borderType);
    TabBench bench;
    bench.tab.SetTabBorderType(borderType);
    bench.tab.SetTabCaption(1, QString(20, QLatin1Char(' ')));
    bench.tab.SetSelectedTabHoverColor(0x808080);
    bench.tab.SetBackColor(0x808080); // the edge begins a pixel above the box
    const auto kind = [](const QColor& color) {
        const int gray = color.red();
        return gray == 0x80  ? QStringLiteral("same")
               : gray > 0x80 ? QStringLiteral("lighter")
                             : QStringLiteral("darker");
    };
    bench.moveTo(bench.middleOf(1));
    const QImage image = bench.painted();
    const TabRecord& tab = bench.tab.tabs().at(1);
    const QRect edge(QPoint(tab.Left + 2, 3 + 3), QPoint(tab.Left + tab.Width - 1, 3 + 21));
    const int x = edge.center().x();
    const int y = 9; // beside the caption's underline
    for (const auto& [ring, nearSides, farSides] :
         {std::tuple(0, "outerNear", "outerFar"), std::tuple(1, "innerNear", "innerFar")}) {
        QTEST(kind(at(image, edge.left() + ring, y)), nearSides);
        QTEST(kind(at(image, x, edge.top() + ring)), nearSides);
        QTEST(kind(at(image, edge.right() - ring, y)), farSides);
        QTEST(kind(at(image, x, edge.bottom() - ring)), farSides);
    }
    for (const QPoint beside :
         {QPoint(edge.left() + 2, y), QPoint(edge.left() - 1, y), QPoint(edge.right() - 2, y),
          QPoint(edge.right() + 1, y), QPoint(x, edge.top() + 2), QPoint(x, edge.top() - 1),
          QPoint(x, edge.bottom() - 2), QPoint(x, edge.bottom() + 1)})
        QCOMPARE(kind(at(image, beside.x(), beside.y())), QStringLiteral("same"));
}

void TestGnTabPaint::paintsSeparators_data()
{
    QTest::addColumn<bool>("allignBottom");
    QTest::addColumn<int>("selected");
    QTest::addColumn<QString>("separators"); // behind which of the tabs; the surface ends with the fourth
    for (const bool below : {false, true}) {
        const char* const place = below ? "below the pane" : "above the pane";
        QTest::addRow("%s, first selected", place) << below << 1 << "3";
        QTest::addRow("%s, second selected", place) << below << 2 << "";
        QTest::addRow("%s, fourth selected", place) << below << 4 << "12";
        QTest::addRow("%s, none selected", place) << below << 0 << "123";
    }
}

void TestGnTabPaint::paintsSeparators()
{
    QFETCH(bool, allignBottom);
    QFETCH(int, selected);
    TabBench bench;
    QVERIFY(bench.tab.AddTab(QStringLiteral("Capture pane"), QStringLiteral("Capture")));
    makeBlue(bench.tab);
    bench.tab.SetAllignBottom(allignBottom);
    bench.tab.SetSeperatorLineColor(0x00FF00);
    bench.tab.SetSelectedTab(selected);
    const QImage image = bench.painted();
    const QColor green(Qt::green);
    QString separators;
    for (int index = 1; index <= 3; ++index) {
        const int x = tabEnd(bench.tab.tabs().spans()[std::size_t(index - 1)]);
        QVERIFY(x < bench.surface()->width());
        if (at(image, x, 3 + 10) != green)
            continue;
        separators += QString::number(index);
        // From 5.5 down to 15: whole pixels between them.
        for (int y = 6; y < 15; ++y)
            QCOMPARE(at(image, x, 3 + y), green);
        QCOMPARE(at(image, x, 3 + 4), blueColor);
        QCOMPARE(at(image, x, 3 + 15), blueColor);
        QCOMPARE(at(image, x - 1, 3 + 14), blueColor);
        QCOMPARE(at(image, x + 1, 3 + 10), blueColor);
    }
    QTEST(separators, "separators");
}

void TestGnTabPaint::paintsCaptions_data()
{
    QTest::addColumn<bool>("allignBottom");
    QTest::newRow("above the pane") << false;
    QTest::newRow("below the pane") << true;
}

void TestGnTabPaint::paintsCaptions()
{
    QFETCH(bool, allignBottom);
    TabBench bench;
    makeBlue(bench.tab);
    bench.tab.SetAllignBottom(allignBottom);
    for (const int index : {1, 2, 3}) {
        const Ink ink = inkOf(bench, index);
        const TabRecord& tab = bench.tab.tabs().at(index);
        QVERIFY(ink.width() > tab.Width * 3 / 4);
        // In the middle: the room of the two sides is the same but for the rounding and the letters' own.
        QVERIFY(std::abs((ink.left - tab.Left) - (tab.Left + tab.Width - 1 - ink.right)) <= 3);
        bench.tab.SetTabCaption(index, QString());
        QCOMPARE(inkOf(bench, index).pixels, 0);
    }
}

void TestGnTabPaint::paintsTheSelectedCaptionBold()
{
    TabBench bench;
    makeBlue(bench.tab);
    const int selected = inkOf(bench, 1).pixels;
    const int plain = inkOf(bench, 2).pixels;
    bench.tab.SetSelectedTab(2);
    QVERIFY(inkOf(bench, 1).pixels < selected);
    QVERIFY(inkOf(bench, 2).pixels > plain);
}

void TestGnTabPaint::underlinesTheHoveredCaption()
{
    TabBench bench;
    makeBlue(bench.tab);
    for (const int index : {1, 2}) {
        bench.tab.SetTabCaption(index, QStringLiteral("i i i i i"));
        const Ink before = inkOf(bench, index);
        QVERIFY(before.longestRow < before.width() * 3 / 4);
        bench.moveTo(bench.middleOf(index));
        const Ink hovered = inkOf(bench, index);
        QVERIFY(hovered.longestRow > hovered.width() * 9 / 10);
        bench.moveTo(bench.middleOf(3));
        QCOMPARE(inkOf(bench, index).longestRow, before.longestRow);
    }
}

/// An ampersand underlines nothing, and is seen.
void TestGnTabPaint::paintsEveryLetter()
{
    TabBench bench;
    makeBlue(bench.tab);
    for (const int index : {1, 2}) {
        bench.tab.SetTabCaption(index, QStringLiteral("&&&&&&&&"));
        QVERIFY(inkOf(bench, index).width() > bench.tab.tabs().at(index).Width * 3 / 4);
    }
    bench.tab.SetTabCaption(3, QStringLiteral("i i i i i"));
    const Ink plain = inkOf(bench, 3);
    bench.tab.SetTabCaption(3, QStringLiteral("&i i i i i"));
    QVERIFY(inkOf(bench, 3).width() > plain.width());
    QVERIFY(inkOf(bench, 3).longestRow < plain.width() * 3 / 4);
}

void TestGnTabPaint::paintsInItsColors_data()
{
    using Set = void (gnTab::*)(quint32);
    QTest::addColumn<Set>("set");
    QTest::addColumn<bool>("allignBottom");
    QTest::addColumn<int>("tab");   // on which it shows; the first is selected
    QTest::addColumn<int>("hover"); // the tab under the pointer
    const auto rows = [](const char* name, Set set, int tab, int hover) {
        QTest::addRow("%s, above the pane", name) << set << false << tab << hover;
        QTest::addRow("%s, below the pane", name) << set << true << tab << hover;
    };
    rows("text", &gnTab::SetTabTextColor, 2, 0);
    rows("text of the selected tab", &gnTab::SetActiveTabTextColor, 1, 0);
    rows("box of the selected tab", &gnTab::SetActiveTabBackColor, 1, 0);
    rows("box of the selected tab under the pointer", &gnTab::SetSelectedTabHoverColor, 1, 1);
    rows("background", &gnTab::SetBackColor, 2, 0);
    QTest::newRow("text under the pointer, above the pane") << Set(&gnTab::SetHoverColour) << false << 2 << 2;
    QTest::newRow("text under the pointer, below the pane") << Set(&gnTab::SetTabTextColor) << true << 2 << 2;
}

void TestGnTabPaint::paintsInItsColors()
{
    using Set = void (gnTab::*)(quint32);
    QFETCH(Set, set);
    QFETCH(bool, allignBottom);
    QFETCH(int, tab);
    QFETCH(int, hover);
    TabBench bench(800);
    makeBlue(bench.tab);
    bench.tab.SetAllignBottom(allignBottom);
    for (const int index : {1, 2, 3})
        bench.tab.SetTabCaption(index, solid);
    if (hover != 0)
        bench.moveTo(bench.middleOf(hover));
    QVERIFY(!shows(bench, tab, Qt::red));
    (bench.tab.*set)(0x0000FF);
    QVERIFY(shows(bench, tab, Qt::red));
}

void TestGnTabPaint::paintsInTheDesktopsColors_data()
{
    using Set = void (gnTab::*)(quint32);
    QTest::addColumn<Set>("set");
    QTest::addColumn<int>("tab");
    QTest::addColumn<int>("hover");
    QTest::newRow("text") << Set(&gnTab::SetTabTextColor) << 2 << 0;
    QTest::newRow("text under the pointer") << Set(&gnTab::SetHoverColour) << 2 << 2;
    QTest::newRow("text of the selected tab") << Set(&gnTab::SetActiveTabTextColor) << 1 << 0;
    QTest::newRow("box of the selected tab") << Set(&gnTab::SetActiveTabBackColor) << 1 << 0;
    QTest::newRow("box under the pointer") << Set(&gnTab::SetSelectedTabHoverColor) << 1 << 1;
    QTest::newRow("background") << Set(&gnTab::SetBackColor) << 2 << 0;
}

void TestGnTabPaint::paintsInTheDesktopsColors()
{
    using Set = void (gnTab::*)(quint32);
    QFETCH(Set, set);
    QFETCH(int, tab);
    QFETCH(int, hover);
    TabBench bench(800);
    makeBlue(bench.tab);
    for (const int index : {1, 2, 3})
        bench.tab.SetTabCaption(index, solid);
    if (hover != 0)
        bench.moveTo(bench.middleOf(hover));
    constexpr quint32 chosenEntry = 0x8000000D;
    (bench.tab.*set)(chosenEntry);
    for (const QColor color : {QColor(12, 34, 56), QColor(210, 120, 30)}) {
        QPalette colors;
        colors.setColor(QPalette::Highlight, color);
        bench.tab.setPalette(colors);
        QVERIFY(shows(bench, tab, color));
    }
}

void TestGnTabPaint::paintsItsSurroundingsInTheDesktopsColors()
{
    TabBench bench;
    makeBlue(bench.tab);
    bench.tab.SetSelectedTab(3);
    bench.tab.SetSeperatorLineColor(0x8000000D);
    bench.tab.SetBackColor(0x8000000E);
    bench.tab.SetActiveTabBackColor(0x80000005);
    const QColor line(12, 34, 56);
    const QColor back(210, 120, 30);
    const QColor active(40, 200, 90);
    QPalette colors;
    colors.setColor(QPalette::Highlight, line);
    colors.setColor(QPalette::HighlightedText, back);
    colors.setColor(QPalette::Base, active);
    bench.tab.setPalette(colors);
    const QImage image = bench.painted();
    QCOMPARE(at(image, tabEnd(bench.tab.tabs().spans()[0]), 3 + 10), line);
    QCOMPARE(at(image, 400, 1), back);  // the bar above
    QCOMPARE(at(image, 400, 15), back); // beside the tabs
    QCOMPARE(at(image, 400, 27), active);
}

/// The box of a tab that is not selected is the strip's background.
void TestGnTabPaint::tabBackColorPaintsNothing()
{
    TabBench bench;
    const QImage before = bench.painted();
    bench.tab.SetTabBackColor(0x0000FF);
    QCOMPARE(bench.tab.TabBackColor(), 0x0000FFu);
    QCOMPARE(bench.painted(), before);
}

void TestGnTabPaint::paintsEveryChange_data()
{
    using Change = std::function<void(TabBench&)>;
    QTest::addColumn<Change>("prepare");
    QTest::addColumn<Change>("change");
    const auto row = [](
                         const char* name, const Change& change, const Change& prepare = [](TabBench&) {}) {
        QTest::newRow(name) << prepare << change;
    };
    row("selection", [](TabBench& bench) { bench.tab.SetSelectedTab(2); });
    row("the same selection", [](TabBench& bench) { bench.tab.SetSelectedTab(1); });
    row("no selection", [](TabBench& bench) { bench.tab.SetSelectedTab(0); });
    row("hover", [](TabBench& bench) { bench.moveTo(bench.middleOf(2)); });
    row(
        "hover's end",
        [](TabBench& bench) {
            bench.moveTo({bench.tab.tabs().at(2).Left - 2, 10});
        },
        [](TabBench& bench) { bench.moveTo(bench.middleOf(2)); });
    row(
        "scrolling to the right", [](TabBench& bench) { bench.button(1)->click(); },
        [](TabBench& bench) { bench.tab.resize(200, 29); });
    row(
        "scrolling to the left", [](TabBench& bench) { bench.button(0)->click(); },
        [](TabBench& bench) {
            bench.tab.resize(200, 29);
            bench.button(1)->click();
        });
    row(
        "right button up",
        [](TabBench& bench) { QTest::mouseRelease(bench.surface(), Qt::RightButton, {}, bench.middleOf(2)); },
        [](TabBench& bench) { QTest::mousePress(bench.surface(), Qt::RightButton, {}, bench.middleOf(2)); });
    row("desktop's colours", [](TabBench& bench) { bench.tab.setPalette(QPalette(Qt::darkRed)); });
    row("caption", [](TabBench& bench) { bench.tab.SetTabCaption(2, QStringLiteral("Informations")); });
    row("removal", [](TabBench& bench) { bench.tab.RemoveTab(2); });
    row("no tabs", [](TabBench& bench) { bench.tab.RemoveAllTabs(); });
    for (const auto& [name, set] : std::initializer_list<std::pair<const char*, void (gnTab::*)(quint32)>>{
             {"BackColor", &gnTab::SetBackColor},
             {"TabTextColor", &gnTab::SetTabTextColor},
             {"ActiveTabBackColor", &gnTab::SetActiveTabBackColor},
             {"ActiveTabTextColor", &gnTab::SetActiveTabTextColor},
             {"HoverColour", &gnTab::SetHoverColour},
             {"SeperatorLineColor", &gnTab::SetSeperatorLineColor},
             {"SelectedTabHoverColor", &gnTab::SetSelectedTabHoverColor}})
        row(name, [set = set](TabBench& bench) { (bench.tab.*set)(blue); });
    row("AllignBottom", [](TabBench& bench) { bench.tab.SetAllignBottom(true); });
    row("TabBorderType", [](TabBench& bench) { bench.tab.SetTabBorderType(2); });
}

void TestGnTabPaint::paintsEveryChange()
{
    using Change = std::function<void(TabBench&)>;
    QFETCH(Change, prepare);
    QFETCH(Change, change);
    TabBench bench;
    prepare(bench);
    PaintCount count(bench.surface());
    // Until nothing more is to be painted.
    for (int before = -1; before != count.paints;) {
        before = count.paints;
        QCoreApplication::processEvents();
    }
    const int before = count.paints;
    change(bench);
    QTRY_VERIFY(count.paints > before);
}

/// What the surface leaves of the strip.
void TestGnTabPaint::paintsItsOwnBackAnew()
{
    TabBench bench;
    QCoreApplication::processEvents();
    PaintCount count(&bench.tab);
    bench.tab.SetBackColor(blue);
    QTRY_VERIFY(count.paints > 0);
}

QTEST_MAIN(TestGnTabPaint)
#include "tst_gntabpaint.moc"

#include "controls/TabLook.h"

#include <QTest>

using namespace quorvia::controls;

using Rings = std::vector<EdgeRing>;
Q_DECLARE_METATYPE(Rings)

namespace {

enum Color : quint32 { Text = 1, ActiveBack, ActiveText, Hover, SelectedHover };

TabProperties propertiesFor(bool allignBottom)
{
    TabProperties properties;
    properties.TabTextColor = Text;
    properties.ActiveTabBackColor = ActiveBack;
    properties.ActiveTabTextColor = ActiveText;
    properties.HoverColour = Hover;
    properties.SelectedTabHoverColor = SelectedHover;
    properties.AllignBottom = allignBottom;
    return properties;
}

} // namespace

class TestTabLook : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void looks_data();
    void looks();
    void separators_data();
    void separators();
    void edges_data();
    void edges();
};

void TestTabLook::looks_data()
{
    QTest::addColumn<bool>("allignBottom");
    QTest::addColumn<bool>("selected");
    QTest::addColumn<bool>("hover");
    QTest::addColumn<int>("height");
    QTest::addColumn<QRect>("fill");
    QTest::addColumn<int>("fillColor");
    QTest::addColumn<QRect>("edge");
    QTest::addColumn<QRect>("text");
    QTest::addColumn<int>("textColor");
    const auto row = [](const char* name, bool bottom, bool selected, bool hover, int height,
                        const QRect& fill, int fillColor, const QRect& edge, const QRect& text,
                        int textColor) {
        QTest::newRow(name) << bottom << selected << hover << height << fill << fillColor << edge << text
                            << textColor;
    };
    const QRect none;
    // A tab at 10, 60 wide, on a surface of 330 twips.
    row("below, selected", true, true, false, 22, {10, 0, 60, 3}, ActiveBack, none, {10, 0, 60, 19},
        ActiveText);
    row("below, selected, hover", true, true, true, 22, {10, 0, 60, 22}, SelectedHover, {11, 0, 59, 16},
        {10, 0, 60, 19}, SelectedHover);
    row("below", true, false, false, 22, none, 0, none, {10, 0, 60, 21}, Text);
    row("below, hover", true, false, true, 22, none, 0, none, {10, 0, 60, 21}, Text);
    row("above, selected", false, true, false, 22, {10, 4, 60, 18}, ActiveBack, none, {10, 0, 60, 21},
        ActiveText);
    row("above, selected, hover", false, true, true, 22, {10, 4, 60, 18}, SelectedHover, {12, 3, 58, 18},
        {10, 1, 60, 20}, ActiveText);
    row("above", false, false, false, 22, none, 0, none, {10, 4, 60, 17}, Text);
    row("above, hover", false, false, true, 22, none, 0, none, {10, 4, 60, 17}, Hover);
    // On other heights.
    row("below, selected, 345 twips", true, true, false, 23, {10, 0, 60, 18}, ActiveBack, none,
        {10, 0, 60, 20}, ActiveText);
    row("below, selected, high", true, true, false, 40, {10, 0, 60, 40}, ActiveBack, none, {10, 0, 60, 37},
        ActiveText);
    row("below, selected, low", true, true, false, 21, {10, 0, 60, 0}, ActiveBack, none, {10, 0, 60, 18},
        ActiveText);
    row("above, selected, hardly any height", false, true, false, 3, {10, 3, 60, 0}, ActiveBack, none,
        {10, 0, 60, 2}, ActiveText);
}

void TestTabLook::looks()
{
    QFETCH(bool, allignBottom);
    QFETCH(bool, selected);
    QFETCH(bool, hover);
    QFETCH(int, height);
    QFETCH(int, fillColor);
    QFETCH(int, textColor);
    TabRecord tab;
    tab.Left = 10;
    tab.Width = 60;
    tab.Selected = selected;
    tab.Hover = hover;
    const TabLook look = tabLook(tab, propertiesFor(allignBottom), height);
    QCOMPARE(look.bold, selected);
    QCOMPARE(look.underlined, hover);
    QTEST(look.fill, "fill");
    QCOMPARE(look.fillColor, quint32(fillColor));
    QTEST(look.edge, "edge");
    QTEST(look.text, "text");
    QCOMPARE(look.textColor, quint32(textColor));
}

void TestTabLook::separators_data()
{
    QTest::addColumn<int>("height");
    QTest::addColumn<QRectF>("line");
    QTest::newRow("330 twips") << 22 << QRectF(70, 0, 1, 5.5);
    QTest::newRow("345 twips") << 23 << QRectF(70, 5.5, 1, 9.5);
    QTest::newRow("below 330") << 20 << QRectF(70, 0, 1, 5.5);
    QTest::newRow("high: down to the end") << 40 << QRectF(70, 5.5, 1, 34.5);
    QTest::newRow("hardly any height") << 3 << QRectF(70, 0, 1, 3);
}

void TestTabLook::separators()
{
    QFETCH(int, height);
    QTEST(separatorLine({10, 60}, height), "line");
}

void TestTabLook::edges_data()
{
    using enum EdgeRing;
    QTest::addColumn<int>("borderType");
    QTest::addColumn<Rings>("rings");
    QTest::newRow("0, none") << 0 << Rings{};
    QTest::newRow("1, raised") << 1 << Rings{Raised, Raised};
    QTest::newRow("2, sunken") << 2 << Rings{Sunken, Sunken};
    QTest::newRow("3, bump") << 3 << Rings{Raised, Sunken};
    QTest::newRow("4, etched") << 4 << Rings{Sunken, Raised};
    QTest::newRow("5, raised inside") << 5 << Rings{Raised};
    QTest::newRow("6 is unknown") << 6 << Rings{};
    QTest::newRow("-1 is unknown") << -1 << Rings{};
}

void TestTabLook::edges()
{
    QFETCH(int, borderType);
    QFETCH(Rings, rings);
    QVERIFY(edgeRings(borderType) == rings);
}

QTEST_APPLESS_MAIN(TestTabLook)
#include "tst_tablook.moc"

// Where the items of the toolbar stand.
#include "platform/ToolRow.h"

#include <QTest>

using namespace quorvia::platform;

namespace {

constexpr RowItem button{32};
constexpr RowItem line{9, true};
constexpr RowItem absent{0};
constexpr RowItem absentLine{0, true};
constexpr int none = -1;

using Items = std::vector<RowItem>;
using Places = std::vector<RowPlace>;

} // namespace

class TestToolRow : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void rows_data()
    {
        QTest::addColumn<Items>("items");
        QTest::addColumn<int>("needed");
        QTest::addColumn<int>("width");
        QTest::addColumn<Places>("places");
        QTest::addColumn<int>("shown");
        QTest::addColumn<int>("extension");

        QTest::newRow("nothing") << Items{} << 8 << 100 << Places{} << 0 << none;
        QTest::newRow("one") << Items{button} << 40 << 40 << Places{{4, 32}} << 1 << none;
        QTest::newRow("in the middle") << Items{button} << 40 << 101 << Places{{34, 32}} << 1 << none;
        QTest::newRow("line between")
            << Items{button, line, button} << 85 << 85 << Places{{4, 32}, {38, 9}, {49, 32}} << 3 << none;
        QTest::newRow("lines at the ends")
            << Items{line, button, line} << 40 << 40 << Places{{0, 0}, {4, 32}, {0, 0}} << 3 << none;
        QTest::newRow("two lines") << Items{button, line, line, button} << 85 << 85
                                   << Places{{4, 32}, {38, 9}, {0, 0}, {49, 32}} << 4 << none;
        QTest::newRow("lines around what is absent")
            << Items{button, line, absent, line, button} << 85 << 85
            << Places{{4, 32}, {38, 9}, {0, 0}, {0, 0}, {49, 32}} << 5 << none;
        QTest::newRow("absent line") << Items{button, absentLine, button} << 74 << 74
                                     << Places{{4, 32}, {0, 0}, {38, 32}} << 3 << none;
        QTest::newRow("only absent") << Items{absent, line, absent} << 8 << 50
                                     << Places{{0, 0}, {0, 0}, {0, 0}} << 3 << none;
        QTest::newRow("one too many")
            << Items{button, button, button} << 108 << 107 << Places{{4, 32}, {38, 32}, {0, 0}} << 2 << 83;
        QTest::newRow("just room for the second")
            << Items{button, button, button} << 108 << 96 << Places{{4, 32}, {38, 32}, {0, 0}} << 2 << 72;
        QTest::newRow("no room for the second")
            << Items{button, button, button} << 108 << 95 << Places{{4, 32}, {0, 0}, {0, 0}} << 1 << 71;
        QTest::newRow("no line before the rest") << Items{button, line, button, button} << 119 << 90
                                                 << Places{{4, 32}, {0, 0}, {0, 0}, {0, 0}} << 2 << 66;
        QTest::newRow("room for none")
            << Items{button, button} << 74 << 50 << Places{{0, 0}, {0, 0}} << 0 << 26;
        QTest::newRow("no width") << Items{button} << 40 << 0 << Places{{0, 0}} << 0 << 0;
    }

    void rows()
    {
        QFETCH(Items, items);
        QFETCH(int, width);
        QTEST(neededWidth(items), "needed");
        const RowPlan plan = planRow(items, width);
        QTEST(plan.places, "places");
        QTEST(plan.shown, "shown");
        QTEST(plan.extension, "extension");
    }

    void nothingOverlapsAtAnyWidth()
    {
        const Items items{button, line, {46}, button, absent, line, button, button, line, {90}};
        for (int width = 0; width <= neededWidth(items) + 20; ++width) {
            const RowPlan plan = planRow(items, width);
            int right = 0;
            for (const RowPlace& place : plan.places) {
                if (place.width == 0)
                    continue;
                QVERIFY2(place.left >= right, qPrintable(QString::number(width)));
                right = place.left + place.width;
            }
            const int end = plan.extension < 0 ? width : plan.extension;
            QVERIFY2(right <= end, qPrintable(QString::number(width)));
            QCOMPARE(plan.extension < 0, width >= neededWidth(items));
        }
    }
};

QTEST_APPLESS_MAIN(TestToolRow)
#include "tst_toolrow.moc"

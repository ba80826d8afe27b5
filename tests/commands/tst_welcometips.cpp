// Which tip is picked for which random numbers.
#include "commands/WelcomeTips.h"

#include <QTest>

#include <array>
#include <vector>

using namespace quorvia::commands;

namespace {

/// Gives the numbers of a script one after the other, and counts them.
class Script
{
  public:
    explicit Script(std::vector<double> units) : m_units(std::move(units)) {}
    UnitSource source()
    {
        return [this] { return m_units.at(m_next++); };
    }
    size_t used() const { return m_next; }

  private:
    std::vector<double> m_units;
    size_t m_next = 0;
};

/// A number that is drawn as the tip `n`.
double unitOf(int n)
{
    return (n - 1) / 13.0;
}

} // namespace

class TestWelcomeTips : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void draws_data()
    {
        QTest::addColumn<double>("unit");
        QTest::addColumn<int>("number");
        QTest::newRow("least") << 0.0 << 1;
        QTest::newRow("just below a half") << 0.4999 / 13 << 1;
        QTest::newRow("an exact half goes to the even number") << 0.5 << 8; // 7.5
        QTest::newRow("just above a half") << 0.5001 / 13 << 2;
        QTest::newRow("seven") << 6.0 / 13 << 7;
        QTest::newRow("thirteen at most") << 12.4999 / 13 << 13;
        QTest::newRow("fourteen at least") << 12.5001 / 13 << 14;
        QTest::newRow("most") << 0.9999999 << 14;
    }

    void draws()
    {
        QFETCH(double, unit);
        Script script({unit});
        QTEST(pickTip(0, script.source()), "number");
        QCOMPARE(script.used(), size_t(1));
    }

    void theFirstAndTheLastComeHalfAsOften()
    {
        constexpr int draws = 13000;
        std::array<int, 15> times = {};
        for (int i = 0; i < draws; ++i) {
            Script script({(i + 0.25) / draws});
            ++times.at(size_t(pickTip(0, script.source())));
        }
        QCOMPARE(times[0], 0);
        QCOMPARE(times[1], 500);
        QCOMPARE(times[14], 500);
        for (size_t n = 2; n <= 13; ++n)
            QCOMPARE(times[n], 1000);
    }

    void theSameAgainIsDrawnOnceMore_data()
    {
        QTest::addColumn<int>("last");
        QTest::addColumn<QList<int>>("drawn");
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("used");
        QTest::newRow("another") << 3 << QList<int>{5, 9} << 5 << 1;
        QTest::newRow("the same") << 5 << QList<int>{5, 9} << 9 << 2;
        QTest::newRow("the same twice") << 5 << QList<int>{5, 5, 9} << 5 << 2;
    }

    void theSameAgainIsDrawnOnceMore()
    {
        QFETCH(int, last);
        QFETCH(QList<int>, drawn);
        std::vector<double> units;
        for (const int number : drawn)
            units.push_back(unitOf(number));
        Script script(units);
        QTEST(pickTip(last, script.source()), "number");
        QTEST(int(script.used()), "used");
    }

    /// The second draw is of the source that gave the first.
    void eachTipHasASourceOfItsOwn()
    {
        std::vector<Script> scripts = {Script({unitOf(4), unitOf(1)}), Script({unitOf(4), unitOf(8)}),
                                       Script({unitOf(8), unitOf(8)})};
        size_t made = 0;
        int last = 0;
        const QStringList texts = drawTips(3, last, [&] { return scripts.at(made++).source(); });
        QCOMPARE(texts, (QStringList{tipText(4), tipText(8), tipText(8)}));
        QCOMPARE(made, size_t(3));
        QCOMPARE(last, 8);
        QCOMPARE(scripts[0].used(), size_t(1));
        QCOMPARE(scripts[2].used(), size_t(2));
    }

    void theLastTipIsKeptBetweenDraws()
    {
        int last = 6;
        Script script({unitOf(6), unitOf(2)});
        QCOMPARE(drawTips(1, last, [&] { return script.source(); }), QStringList{tipText(2)});
        QCOMPARE(last, 2);
    }

    void texts()
    {
        const char* const expected[] = {
            "Pressing 'H' will toggle the interface tabs on and off.",
            "Pressing 'F' will toggle the File/Playlist explorer on and off.",
            "You can access addional imaging functions by 'right-clicking' on an open image.",
            "To send an image via e-mail: Right-click the image then select 'Send Image via E-mail'",
            "Use 'CTRL+N' and 'CTRL+B' to navigate to the next/previous image in the filelist.",
            "Pressing 'Q' will close the open image and return to the welcome screen.",
            "Use ' [ ' and ' ] ' to navigate to the next/previous image in the filelist.",
            "Pressing 'ALT+F' will fit the main window to the size of image.",
            "Pressing 'ESC' will exit the program.",
            "Pressing 'Z' will expediently toggle the current display visibility.",
            "Pressing 'X' will expediently minimize the main window.",
            "Pressing '2' will show the image information tab.",
            "Pressing '3' will show the image filmstrip tab.",
            "Pressing 'R' will select a random image from the playlist."};
        for (int number = 1; number <= 14; ++number)
            QCOMPARE(tipText(number), QLatin1String(expected[number - 1]));
        QVERIFY(tipText(0).isEmpty() && tipText(15).isEmpty() && tipText(-1).isEmpty());
    }

    void sourcesOfTheClockDiffer()
    {
        QSet<double> firsts;
        for (int i = 0; i < 20; ++i) {
            const UnitSource units = unitsFromClock();
            const double unit = units();
            QVERIFY(unit >= 0 && unit < 1);
            QVERIFY(units() != unit); // it goes on
            firsts.insert(unit);
        }
        QVERIFY(firsts.size() > 10);
    }
};

QTEST_APPLESS_MAIN(TestWelcomeTips)
#include "tst_welcometips.moc"

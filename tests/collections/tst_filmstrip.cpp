// Layout, pump and scrolling of the filmstrip.
#include "FilmBench.h"

#include <QSignalSpy>

#include <malloc.h>

#include <algorithm>

using namespace quorvia;
using namespace quorvia::test;

namespace {

const QColor red(200, 30, 30);
const QColor lightGray(0xE0, 0xE0, 0xE0);
const QColor darkGray(0xC0, 0xC0, 0xC0);
const QColor white(255, 255, 255);

/// What the program holds of the heap.
qint64 heapBytes()
{
    const struct mallinfo2 facts = mallinfo2();
    return qint64(facts.uordblks + facts.hblkhd);
}

} // namespace

class TestFilmstrip : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<FilmBench>(); }
    void cleanup() { m_bench.reset(); }

    void asItIsMade()
    {
        QCOMPARE(m_bench->surface().width(), 1);
        QCOMPARE(strip().NumberOfRows(), 1);
        QCOMPARE(strip().SelectedImages(), QString());
        QCOMPARE(strip().GetUniKey(), QStringLiteral("0"));
        QVERIFY(m_bench->bar().isHidden());
        QCOMPARE(m_bench->timer("tDraw").interval(), 1000);
        QCOMPARE(m_bench->timer("tSelectionChange").interval(), 10);
        QCOMPARE(m_bench->timer("tDrawSelected").interval(), 10);
        QCOMPARE(m_bench->timer("tMove").interval(), 5);
        for (const char* name : {"tDraw", "tSelectionChange", "tDrawSelected", "tMove"})
            QVERIFY(!m_bench->timer(name).isActive());
        QCOMPARE(strip().accessibleName(), QStringLiteral("Filmstrip"));
    }

    void anEmptyListPaintsNothing()
    {
        strip().DrawStrip();
        QCOMPARE(m_bench->timer("tDraw").interval(), 100);
        QVERIFY(m_bench->settles());
        QCOMPARE(m_bench->surface().width(), 0);
        QVERIFY(m_bench->bar().isHidden());
        m_bench->addMany(20);
        m_bench->laysOut();
        QVERIFY(!m_bench->bar().isHidden());
        strip().Clear();
        m_bench->laysOut();
        QCOMPARE(m_bench->surface().width(), 0);
        QVERIFY(m_bench->bar().isHidden());
        QVERIFY(m_bench->timer("tDraw").isActive());
        QVERIFY(m_bench->settles());
    }

    void aListThatFitsShowsNoBar()
    {
        m_bench->addMany(3, red);
        QVERIFY(m_bench->draws());
        QVERIFY(m_bench->bar().isHidden());
        QCOMPARE(m_bench->surface().height(), 120);
        QCOMPARE(m_bench->surface().width(), 480);
        QVERIFY(isNear(m_bench->middle(2), red));
    }

    void aLongerOneDoes()
    {
        m_bench->addMany(5, red);
        QVERIFY(m_bench->draws());
        QVERIFY(!m_bench->bar().isHidden());
        const int height = 120 - m_bench->bar().height();
        QCOMPARE(m_bench->surface().height(), height);
        QCOMPARE(m_bench->bar().geometry(), QRect(0, height, 600, m_bench->bar().height()));
    }

    void twoHundredAreWholeOneMoreIsAWindow()
    {
        m_bench->addMany(200);
        m_bench->laysOut();
        const double cell = m_bench->surface().height() * 1.333;
        QVERIFY(m_bench->surface().width() > 190 * cell);
        strip().add(QStringLiteral("/one/more.png"));
        m_bench->laysOut();
        QVERIFY(m_bench->surface().width() < 9 * cell);
        QCOMPARE(m_bench->bar().Max(), int(std::nearbyint(201 - 600 / cell + 1)));
    }

    void theColorsBehindNeighboursDiffer()
    {
        m_bench->addMany(4, red);
        strip().resize(1000, 120);
        QVERIFY(m_bench->draws());
        QCOMPARE(m_bench->corner(0), darkGray);
        QCOMPARE(m_bench->corner(1), white);
        QCOMPARE(m_bench->corner(2), lightGray);
        QCOMPARE(m_bench->corner(3), darkGray);
    }

    void rowsFillAColumnFirst()
    {
        strip().add(m_bench->picture(QStringLiteral("a.png"), Qt::red));
        strip().add(m_bench->picture(QStringLiteral("b.png"), Qt::green));
        strip().add(m_bench->picture(QStringLiteral("c.png"), Qt::blue));
        strip().SetNumberOfRows(2);
        QVERIFY(m_bench->settles());
        QVERIFY(isNear(m_bench->middle(0, 0, 2), Qt::red));
        QVERIFY(isNear(m_bench->middle(0, 1, 2), Qt::green));
        QVERIFY(isNear(m_bench->middle(1, 0, 2), Qt::blue));
        strip().SetNumberOfRows(0);
        QCOMPARE(strip().NumberOfRows(), 1);
    }

    void theSameRowsLeaveThePaintedCellsAlone()
    {
        m_bench->addMany(3, red);
        QVERIFY(m_bench->draws());
        strip().SetSelectedImages(QStringLiteral("1"));
        QVERIFY(m_bench->settles());
        const QColor first = m_bench->corner(0);
        const QColor third = m_bench->corner(2);
        strip().SetNumberOfRows(1);
        QVERIFY(!m_bench->timer("tDraw").isActive());
        QVERIFY(m_bench->timer("tSelectionChange").isActive());
        QVERIFY(m_bench->settles());
        QCOMPARE(m_bench->corner(0), first);
        QCOMPARE(m_bench->corner(1), QColor(Qt::blue));
        QCOMPARE(m_bench->corner(2), third);
    }

    void oneFileMayStandSeveralTimes()
    {
        const QString file = m_bench->picture(QStringLiteral("a.png"), red);
        for (int i = 0; i < 3; ++i)
            strip().add(file);
        QVERIFY(m_bench->draws());
        for (int i = 0; i < 3; ++i)
            QVERIFY(isNear(m_bench->middle(i), red));
        QCOMPARE(m_bench->thumbnails().size(), 1);
    }

    void clearLetsThePumpRunOut()
    {
        m_bench->addMany(100, red);
        m_bench->laysOut();
        strip().Clear();
        QVERIFY(m_bench->timer("tDraw").isActive());
        QVERIFY(m_bench->settles());
        QVERIFY(strip().Images().isEmpty());
    }

    void drawingAgainBeginsAnew()
    {
        m_bench->addMany(50, red);
        m_bench->laysOut();
        strip().Clear();
        strip().add(m_bench->picture(QStringLiteral("a.png"), Qt::green));
        QVERIFY(m_bench->draws());
        QVERIFY(isNear(m_bench->middle(0), Qt::green));
        QCOMPARE(m_bench->middle(1), QColor());
    }

    void selectingPaintsBlue()
    {
        m_bench->addMany(3, red);
        QVERIFY(m_bench->draws());
        strip().SetSelectedImages(QStringLiteral("0;2"));
        QCOMPARE(strip().SelectedImages(), QString()); // not before it is painted
        QVERIFY(m_bench->settles());
        QCOMPARE(strip().SelectedImages(), QStringLiteral("0;2;"));
        QCOMPARE(m_bench->corner(0), QColor(Qt::blue));
        QVERIFY(m_bench->corner(1) != QColor(Qt::blue));
        QCOMPARE(m_bench->corner(2), QColor(Qt::blue));
        QVERIFY(isNear(m_bench->middle(2), red));
    }

    void theLastOfSeveralSelectionsCounts()
    {
        m_bench->addMany(3, red);
        QVERIFY(m_bench->draws());
        strip().SetSelectedImages(QStringLiteral("0"));
        strip().SetSelectedImages(QStringLiteral("1"));
        bool firstWasSeen = false;
        connect(&m_bench->timer("tDrawSelected"), &QTimer::timeout, this,
                [&] { firstWasSeen = firstWasSeen || m_bench->corner(0) == QColor(Qt::blue); });
        QVERIFY(m_bench->settles());
        QVERIFY(!firstWasSeen);
        QCOMPARE(strip().SelectedImages(), QStringLiteral("1;"));
        QCOMPARE(m_bench->corner(1), QColor(Qt::blue));
    }

    void aSelectedCellLiesInItsColumnAndRow_data()
    {
        QTest::addColumn<int>("rows");
        for (const int rows : {2, 3})
            QTest::addRow("%d", rows) << rows;
    }

    void aSelectedCellLiesInItsColumnAndRow()
    {
        QFETCH(int, rows);
        m_bench->addMany(7, red);
        strip().SetNumberOfRows(rows);
        strip().SetSelectedImages(QStringLiteral("5"));
        QVERIFY(m_bench->settles());
        for (int i = 0; i < 7; ++i)
            QCOMPARE(m_bench->corner(i / rows, i % rows, rows) == QColor(Qt::blue), i == 5);
    }

    void otherRowsKeepTheSelection()
    {
        m_bench->addMany(7, red);
        strip().SetSelectedImages(QStringLiteral("4"));
        QVERIFY(m_bench->draws());
        QVERIFY(m_bench->settles());
        strip().SetNumberOfRows(2);
        QVERIFY(m_bench->settles());
        QVERIFY(strip().SelectedImages().startsWith(QStringLiteral("4;")));
        for (int i = 0; i < 7; ++i)
            QCOMPARE(m_bench->corner(i / 2, i % 2, 2) == QColor(Qt::blue), i == 4);
    }

    void theOldMarksGoBeforeTheNewOnesCome_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QList<int>>("old");
        QTest::newRow("one") << "0" << QList<int>{0};
        QTest::newRow("several") << "0;1;2" << QList<int>{0, 1, 2};
    }

    void theOldMarksGoBeforeTheNewOnesCome()
    {
        QFETCH(QString, before);
        QFETCH(QList<int>, old);
        m_bench->addMany(4, red);
        strip().resize(1000, 120);
        QVERIFY(m_bench->draws());
        strip().SetSelectedImages(before);
        QVERIFY(m_bench->settles());
        for (const int i : old)
            QCOMPARE(m_bench->corner(i), QColor(Qt::blue));
        bool together = false;
        connect(&m_bench->timer("tDrawSelected"), &QTimer::timeout, this, [&] {
            for (const int i : old)
                together = together || (isBlue(3) && isBlue(i));
        });
        strip().SetSelectedImages(QStringLiteral("3"));
        QVERIFY(m_bench->settles());
        QVERIFY(!together);
        QVERIFY(isBlue(3));
        for (const int i : old)
            QVERIFY(!isBlue(i));
    }

    void afterASelectedCellTheColorsBeginAnew()
    {
        m_bench->addMany(3, red);
        QVERIFY(m_bench->draws());
        strip().SetSelectedImages(QStringLiteral("2"));
        QVERIFY(m_bench->settles());
        QVERIFY(isBlue(2));
        strip().SetSelectedImages(QString());
        QVERIFY(m_bench->settles());
        QCOMPARE(m_bench->corner(2), lightGray); // painted right behind the blue one
    }

    void inAScrolledWindowTheSelectionStandsAsInTheFirst_data()
    {
        QTest::addColumn<int>("position");
        QTest::addColumn<int>("column"); // -1: none
        QTest::newRow("of the first window") << 2 << 2;
        QTest::newRow("of the window in sight") << 101 << -1;
    }

    void inAScrolledWindowTheSelectionStandsAsInTheFirst()
    {
        QFETCH(int, position);
        QFETCH(int, column);
        m_bench->addMany(300);
        QVERIFY(m_bench->draws());
        m_bench->bar().SetValue(100);
        QVERIFY(m_bench->settles());
        strip().SetSelectedImages(QString::number(position));
        QVERIFY(m_bench->settles());
        for (int i = 0; i < 5; ++i)
            QCOMPARE(isBlue(i), i == column);
        m_bench->bar().SetValue(99); // its pass does not paint it again
        QVERIFY(m_bench->settles());
        for (int i = 0; i < 5; ++i)
            QVERIFY(!isBlue(i));
    }

    void aListThatComesInMidReadingShowsItsOwnImages_data()
    {
        QTest::addColumn<bool>("bySelection"); // is what is being read
        QTest::newRow("a cell of the pass") << false;
        QTest::newRow("a selected cell") << true;
    }

    void aListThatComesInMidReadingShowsItsOwnImages()
    {
        QFETCH(bool, bySelection);
        strip().add(
            m_bench->picture(QStringLiteral("large.png"), red, QSize(6000, 5000))); // some time to read
        if (bySelection) {
            QVERIFY(m_bench->draws());
            strip().SetSelectedImages(QStringLiteral("0"));
            const auto isRead = [this] {
                return m_bench->timer("tDrawSelected").isActive() &&
                       !m_bench->timer("tSelectionChange").isActive();
            };
            QVERIFY(QTest::qWaitFor(isRead, 5000));
        } else {
            m_bench->laysOut();
        }
        strip().Clear();
        bool wasRed = false;
        const auto look = [&] { wasRed = wasRed || isNear(m_bench->middle(0), red); };
        for (const char* name : {"tDraw", "tDrawSelected"})
            connect(&m_bench->timer(name), &QTimer::timeout, &strip(), look);
        strip().add(m_bench->picture(QStringLiteral("other.png"), Qt::green));
        QVERIFY(m_bench->draws());
        QVERIFY(!wasRed);
        QVERIFY(isNear(m_bench->middle(0), Qt::green));
        QVERIFY(m_bench->settles());
    }

    void aTickPaintsOneCell()
    {
        m_bench->addMany(6, red);
        strip().resize(1200, 120);
        QVERIFY(m_bench->draws()); // there are thumbnails then, which are soon read
        m_bench->laysOut();
        QCOMPARE(m_bench->timer("tDraw").interval(), 10);
        const auto painted = [this] {
            int cells = 0;
            while (cells < 6 && isNear(m_bench->middle(cells), red))
                ++cells;
            return cells;
        };
        QCOMPARE(painted(), 0);
        int before = 0;
        int most = 0;
        connect(&m_bench->timer("tDraw"), &QTimer::timeout, this, [&] {
            most = std::max(most, painted() - before);
            before = painted();
        });
        QVERIFY(m_bench->settles());
        QCOMPARE(painted(), 6);
        QCOMPARE(most, 1);
    }

    void selectingNothingClears()
    {
        m_bench->addMany(2, red);
        QVERIFY(m_bench->draws());
        strip().SetSelectedImages(QStringLiteral("1"));
        QVERIFY(m_bench->settles());
        strip().SetSelectedImages(QString());
        QVERIFY(m_bench->settles());
        QCOMPARE(strip().SelectedImages(), QStringLiteral(";"));
        QVERIFY(m_bench->corner(1) != QColor(Qt::blue));
        QVERIFY(isNear(m_bench->middle(1), red));
    }

    void aPositionBeyondTheListIsPassedOver()
    {
        m_bench->addMany(2, red);
        QVERIFY(m_bench->draws());
        strip().SetSelectedImages(QStringLiteral("7;-3;x;1"));
        QVERIFY(m_bench->settles());
        QCOMPARE(m_bench->corner(1), QColor(Qt::blue));
        QVERIFY(m_bench->corner(0) != QColor(Qt::blue));
    }

    void theSelectionOutlivesAPass()
    {
        m_bench->addMany(3, red);
        strip().SetSelectedImages(QStringLiteral("1"));
        QVERIFY(m_bench->draws());
        QVERIFY(m_bench->settles());
        QCOMPARE(m_bench->corner(1), QColor(Qt::blue));
    }

    void scrollingAWholeStripMovesIt()
    {
        m_bench->addMany(20, red);
        m_bench->laysOut();
        m_bench->bar().SetValue(30);
        QCOMPARE(m_bench->surface().x(), -100);
        QVERIFY(m_bench->settles());
        QCOMPARE(m_bench->surface().x(), -100);
        QVERIFY(isNear(m_bench->middle(19), red));
        m_bench->bar().SetValue(m_bench->bar().Max());
        QVERIFY(std::abs(m_bench->surface().geometry().right() + 1 - 600) <= 2);
    }

    void scrollingAWindowPaintsItAnew()
    {
        m_bench->addMany(300);
        const QString file = m_bench->picture(QStringLiteral("p00120.png"), Qt::green);
        QVERIFY(strip().Images().contains(file));
        QVERIFY(m_bench->draws());
        QCOMPARE(m_bench->middle(0), m_bench->corner(0)); // no image
        m_bench->bar().SetValue(120);
        QCOMPARE(m_bench->timer("tDraw").interval(), 1);
        QVERIFY(m_bench->settles());
        QCOMPARE(m_bench->surface().x(), 0);
        QVERIFY(isNear(m_bench->middle(0), Qt::green));
        m_bench->bar().SetValue(119);
        m_bench->bar().SetValue(118); // while the pass runs
        QVERIFY(m_bench->settles());
        QVERIFY(isNear(m_bench->middle(2), Qt::green));
        QCOMPARE(m_bench->timer("tDraw").interval(), 1);
        strip().DrawStrip();
        QCOMPARE(m_bench->timer("tDraw").interval(), 100);
    }

    void aNewWidthIsLaidOutWithTheNextScroll()
    {
        m_bench->addMany(300);
        QVERIFY(m_bench->draws());
        const int before = m_bench->surface().width();
        strip().resize(1200, 120);
        QCOMPARE(m_bench->surface().width(), before);
        m_bench->bar().SetValue(3);
        QVERIFY(m_bench->surface().width() > 1200);
        QVERIFY(m_bench->settles());
        QVERIFY(m_bench->corner(7).isValid() && m_bench->corner(7) != m_bench->corner(6));
    }

    void aWholeStripThatFitsNowGoesBackToTheLeft()
    {
        m_bench->addMany(6, red);
        QVERIFY(m_bench->draws());
        m_bench->bar().SetValue(m_bench->bar().Max());
        QVERIFY(m_bench->surface().x() < 0);
        strip().resize(1500, 120);
        m_bench->bar().SetValue(1);
        QVERIFY(m_bench->bar().isHidden());
        QCOMPARE(m_bench->surface().x(), 0);
    }

    void theBarFollowsTheHeight()
    {
        m_bench->addMany(6, red);
        QVERIFY(m_bench->draws());
        strip().resize(600, 200);
        QCOMPARE(m_bench->surface().height(), 200 - m_bench->bar().height());
        QCOMPARE(m_bench->bar().y(), m_bench->surface().height());
    }

    void aNamedImageComesIntoView()
    {
        m_bench->addMany(40);
        QVERIFY(m_bench->draws());
        const int cell = m_bench->surface().width() / 40;
        const auto show = [this](int index) {
            strip().SetVisibleImage(strip().Images().at(index).toUpper());
        };
        show(1);
        QCOMPARE(m_bench->bar().Value(), 0);
        show(20);
        QVERIFY(std::abs(m_bench->surface().x() + 20 * cell) < cell / 2);
        const int there = m_bench->bar().Value();
        strip().SetVisibleImage(QStringLiteral("/no/such.png"));
        QCOMPARE(m_bench->bar().Value(), there);
    }

    void aNamedImageInRowsAndWindows_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("rows");
        QTest::addColumn<int>("named");
        QTest::addColumn<int>("value"); // of the bar; -1: its highest
        QTest::newRow("a window: the highest value") << 300 << 1 << 40 << -1;
        QTest::newRow("the beginning of a window") << 300 << 1 << 1 << 0;
        QTest::newRow("rows: as if each had a column") << 180 << 3 << 15 << 15;
        QTest::newRow("rows: beyond the end") << 180 << 3 << 100 << -1;
    }

    void aNamedImageInRowsAndWindows()
    {
        QFETCH(int, count);
        QFETCH(int, rows);
        QFETCH(int, named);
        QFETCH(int, value);
        strip().SetNumberOfRows(rows);
        m_bench->addMany(count);
        m_bench->laysOut();
        strip().SetVisibleImage(strip().Images().at(named));
        const double cell = m_bench->surface().height() * 1.333 * 15 / rows;
        const double expected = value < 0 ? m_bench->bar().Max() : value * cell / 50;
        QVERIFY(std::abs(m_bench->bar().Value() - expected) <= 1);
    }

    void theFirstOfSeveralOfOneNameComesIntoView()
    {
        m_bench->addMany(40);
        for (const QString& twice : {strip().Images().at(10), strip().Images().at(20)})
            strip().add(twice);
        m_bench->laysOut();
        strip().SetVisibleImage(strip().Images().at(20));
        const int cell = m_bench->surface().width() / 42;
        QVERIFY(std::abs(m_bench->surface().x() + 20 * cell) < cell / 2);
    }

    void aNamedImageIsNotForgottenBeforeTheLayout()
    {
        m_bench->addMany(40);
        strip().DrawStrip();
        strip().SetVisibleImage(strip().Images().at(30));
        QCOMPARE(m_bench->bar().Value(), 0);
        QVERIFY(m_bench->settles());
        QVERIFY(m_bench->surface().x() < -3000);
    }

    void redrawDoesNothing()
    {
        m_bench->addMany(2, red);
        strip().ReDraw();
        QVERIFY(!m_bench->timer("tDraw").isActive());
    }

    void aControlWithoutHeightHarmsNothing()
    {
        strip().resize(600, 0);
        m_bench->addMany(3, red);
        QVERIFY(m_bench->draws());
        strip().SetVisibleImage(strip().Images().at(2));
        strip().resize(0, 0);
        QVERIFY(m_bench->draws());
    }

    void tenThousandEntriesPaintWhatIsInSight()
    {
        constexpr qint64 entryBytes = 400; // a name of up to 100 characters, and what it is kept in
        constexpr qint64 otherBytes = 4 << 20;
        constexpr int entries = 10'000;
        const qint64 before = heapBytes();
        m_bench->addMany(entries);
        QVERIFY(m_bench->draws());
        const auto pixels = [this] {
            return qint64(m_bench->surface().width()) * m_bench->surface().height();
        };
        QVERIFY(pixels() < 9 * 160 * 120);
        constexpr int places = 60;
        const qint64 painted = heapBytes();
        QVERIFY(painted - before < entries * entryBytes + otherBytes);
        for (int place = 1; place <= places; ++place) {
            m_bench->bar().SetValue(m_bench->bar().Max() / places * place);
            QVERIFY(m_bench->settles());
            QVERIFY(pixels() < 9 * 160 * 120);
        }
        QVERIFY(heapBytes() - painted < otherBytes); // no cells of the places before
        QVERIFY(m_bench->corner(0).isValid());
    }

  private:
    collections::Filmstrip& strip() const { return *m_bench->strip; }
    bool isBlue(int column) const { return m_bench->corner(column) == QColor(Qt::blue); }
    std::unique_ptr<FilmBench> m_bench;
};

QTEST_MAIN(TestFilmstrip)
#include "tst_filmstrip.moc"

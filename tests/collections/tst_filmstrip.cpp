// Layout and pump of the filmstrip.
#include "FilmBench.h"

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
    std::unique_ptr<FilmBench> m_bench;
};

QTEST_MAIN(TestFilmstrip)
#include "tst_filmstrip.moc"

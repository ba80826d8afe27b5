// The filmstrip when it gets another size while pictures stand in it.
#include "FilmBench.h"

using namespace quorvia;
using namespace quorvia::test;

namespace {

const QColor red(200, 30, 30);

} // namespace

class TestFilmstripResize : public QObject
{
    Q_OBJECT

  private:
    std::unique_ptr<FilmBench> m_bench;

    collections::Filmstrip& strip() const { return *m_bench->strip; }
    /// Gives the strip another size and waits until all is painted for it.
    bool takes(QSize size) const
    {
        strip().resize(size);
        return QTest::qWaitFor([this] { return !m_bench->timer("tResize").isActive(); }, 5000) &&
               m_bench->settles();
    }

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<FilmBench>(); }
    void cleanup() { m_bench.reset(); }

    void aBarComesWhenItGetsNarrow()
    {
        m_bench->addMany(3, red);
        QVERIFY(m_bench->draws());
        QVERIFY(m_bench->bar().isHidden());
        QVERIFY(takes({300, 120}));
        QVERIFY(!m_bench->bar().isHidden());
        const int height = 120 - m_bench->bar().height();
        QCOMPARE(m_bench->surface().height(), height); // and smaller cells
        QVERIFY(isNear(m_bench->middle(2), red));
        QVERIFY(takes({600, 120}));
        QVERIFY(m_bench->bar().isHidden());
        QCOMPARE(m_bench->surface().height(), 120);
        QVERIFY(isNear(m_bench->middle(2), red));
    }

    void anotherWidthPaintsNothingAgain()
    {
        m_bench->addMany(12, red);
        QVERIFY(m_bench->draws());
        m_bench->bar().SetValue(m_bench->bar().Max());
        const int before = m_bench->bar().Max();
        strip().resize(700, 120);
        QTRY_VERIFY(!m_bench->timer("tResize").isActive());
        QVERIFY(!m_bench->timer("tDraw").isActive());
        QVERIFY(isNear(m_bench->middle(11), red));
        QVERIFY(m_bench->bar().Max() < before);
        QCOMPARE(m_bench->bar().Value(), m_bench->bar().Max());
        QVERIFY(std::abs(m_bench->surface().geometry().right() + 1 - 700) <= 3); // its end at the edge
    }

    void aWiderWindowOfALongListIsFilled()
    {
        m_bench->addMany(201, red);
        QVERIFY(m_bench->draws());
        m_bench->bar().SetValue(50);
        QVERIFY(m_bench->settles());
        QVERIFY(takes({1400, 120}));
        QVERIFY(m_bench->surface().width() >= 1400);
        QVERIFY(isNear(m_bench->middle(9), red));
        QCOMPARE(m_bench->bar().Value(), 50);
    }

    void anotherHeightKeepsThePlace_data()
    {
        QTest::addColumn<int>("count");
        QTest::addColumn<int>("rows");
        QTest::newRow("one strip") << 40 << 1;
        QTest::newRow("one strip in two rows") << 60 << 2;
        QTest::newRow("a long list") << 201 << 1;
    }

    void anotherHeightKeepsThePlace()
    {
        QFETCH(int, count);
        QFETCH(int, rows);
        strip().SetNumberOfRows(rows);
        m_bench->addMany(count, red);
        QVERIFY(m_bench->draws());
        m_bench->bar().SetValue(m_bench->bar().Max() / 2);
        QVERIFY(m_bench->settles());
        const int before = leftColumn(rows);
        QVERIFY(before > 3);
        QVERIFY(takes({600, 160}));
        QVERIFY(std::abs(leftColumn(rows) - before) <= 1);
        QVERIFY(isNear(m_bench->middle(count > 200 ? 1 : before + 1, 0, rows), red));
    }

    void anotherSizeInMidPassPaintsEachCellOnce_data()
    {
        QTest::addColumn<bool>("isPainted");  // before the size changes
        QTest::addColumn<bool>("isScrolled"); // before the size is taken
        for (const bool isPainted : {false, true}) {
            for (const bool isScrolled : {false, true})
                QTest::addRow("%s, %s", isPainted ? "painted" : "in mid-pass",
                              isScrolled ? "scrolled" : "left alone")
                    << isPainted << isScrolled;
        }
    }

    void anotherSizeInMidPassPaintsEachCellOnce()
    {
        QFETCH(bool, isPainted);
        QFETCH(bool, isScrolled);
        addColours(12);
        strip().resize(2000, 120); // all of them, without a bar
        strip().DrawStrip();
        if (isPainted)
            QVERIFY(m_bench->settles());
        else
            QVERIFY(QTest::qWaitFor([&] { return isNear(m_bench->middle(7), colour(7)); }, 5000));
        strip().resize(400, 120); // smaller cells above a bar
        if (isScrolled)
            m_bench->bar().SetValue(1);
        QTRY_VERIFY(!m_bench->timer("tResize").isActive());
        QVERIFY(m_bench->settles());
        QCOMPARE(m_bench->surface().height(), 120 - m_bench->bar().height());
        const QImage shot = m_bench->surface().grab().toImage();
        for (int i = 0; i < 12; ++i) {
            QVERIFY2(isNear(m_bench->middle(i), colour(i)), qPrintable(m_bench->middle(i).name()));
            for (int x = shot.width() * i / 12 + 2; x < shot.width() * (i + 1) / 12 - 2; ++x) {
                const QColor seen(shot.pixel(x, shot.height() / 2)); // frame or picture, nothing between
                QVERIFY2(seen.saturation() == 0 || isNear(seen, colour(i)), qPrintable(seen.name()));
            }
        }
    }

    void anEmptyStripHasNothingToDo()
    {
        strip().resize(300, 100);
        QVERIFY(!m_bench->timer("tResize").isActive());
    }

  private:
    static QColor colour(int index) { return QColor::fromHsv(index * 30, 200, 200); }
    void addColours(int count) const
    {
        for (int i = 0; i < count; ++i)
            strip().add(m_bench->picture(QStringLiteral("c%1.png").arg(i), colour(i)));
    }

    /// The column at the left edge.
    int leftColumn(int rows) const
    {
        if (m_bench->surface().x() == 0)
            return m_bench->bar().Value();
        const double cell = m_bench->surface().height() * 1.333 / rows;
        return int(std::lround(-m_bench->surface().x() / cell));
    }
};

QTEST_MAIN(TestFilmstripResize)
#include "tst_filmstripresize.moc"

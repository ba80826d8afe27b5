// Scrolling the filmstrip: by its bar, and to an image by name.
#include "FilmBench.h"

#include <algorithm>

using namespace quorvia;
using namespace quorvia::test;

namespace {

const QColor red(200, 30, 30);

} // namespace

class TestFilmstripScroll : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<FilmBench>(); }
    void cleanup() { m_bench.reset(); }

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

  private:
    collections::Filmstrip& strip() const { return *m_bench->strip; }
    std::unique_ptr<FilmBench> m_bench;
};

QTEST_MAIN(TestFilmstripScroll)
#include "tst_filmstripscroll.moc"

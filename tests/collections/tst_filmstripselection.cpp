// Selected cells of the filmstrip: their marks, their places, and what a selection outlives.
#include "FilmBench.h"

#include <algorithm>

using namespace quorvia;
using namespace quorvia::test;

namespace {

const QColor red(200, 30, 30);
const QColor lightGray(0xE0, 0xE0, 0xE0);

} // namespace

class TestFilmstripSelection : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { m_bench = std::make_unique<FilmBench>(); }
    void cleanup() { m_bench.reset(); }

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

  private:
    collections::Filmstrip& strip() const { return *m_bench->strip; }
    bool isBlue(int column) const { return m_bench->corner(column) == QColor(Qt::blue); }
    std::unique_ptr<FilmBench> m_bench;
};

QTEST_MAIN(TestFilmstripSelection)
#include "tst_filmstripselection.moc"

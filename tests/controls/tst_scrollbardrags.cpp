// Presses on the track of a scroll bar and drags of its thumb.
#include "controls/ScrollBar.h"
#include "ScrollMouseStage.h"

#include <QSignalSpy>
#include <QTest>

using namespace quorvia::controls;
using namespace quorvia::test;

class TestScrollBarDrags : public QObject, private ScrollMouseStage
{
    Q_OBJECT

  private Q_SLOTS:
    void init() { setUp(); }
    void cleanup() { tearDown(); }
    void pressOnTheTrack_data();
    void pressOnTheTrack();
    void dragFromTheTrack_data();
    void dragFromTheTrack();
    void dragOfTheThumb_data();
    void dragOfTheThumb();
    void pressOnTheThumbChangesNothing();
    void tooShortForItsThumb();
    void tooShortToMoveIt_data();
    void tooShortToMoveIt();
};

void TestScrollBarDrags::pressOnTheTrack_data()
{
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("along");
    QTest::addColumn<int>("value");
    // Units of 20 twips: 4 pixels are 3 of them.
    QTest::newRow("long thumb, behind it") << 50 << 0 << 18 + 144 << 50;
    QTest::newRow("long thumb, at the far end") << 50 << 0 << 351 << 50;
    QTest::newRow("long thumb, before it") << 50 << 50 << 18 + 40 << 30;
    QTest::newRow("long thumb, just before it") << 50 << 50 << 18 + 64 << 48;
    QTest::newRow("long thumb, at the near end") << 50 << 50 << 18 << 0;
    QTest::newRow("longer thumb, before it") << 100 << 80 << 18 + 80 << 60;
    QTest::newRow("short thumb") << 1000 << 0 << 18 + 100 << 325; // 1500 of 4610 twips
    QTest::newRow("short thumb, near the far end") << 1000 << 0 << 345 << 1000;
}

void TestScrollBarDrags::pressOnTheTrack()
{
    QFETCH(int, maximum);
    QFETCH(int, from);
    QFETCH(int, along);
    QFETCH(int, value);
    for (const int alight : {1, 2}) {
        make(alight, maximum);
        m_bar->SetValue(from);
        QSignalSpy changes(m_bar, &ScrollBar::Change);
        press(along);
        QCOMPARE(changes, QList<QVariantList>{{value}});
        QVERIFY(m_bar->Dragging());
        QVERIFY(!tMove()->isActive());
        release(along);
        QVERIFY(!m_bar->Dragging());
        QCOMPARE(changes.size(), 1);
    }
}

void TestScrollBarDrags::dragFromTheTrack_data()
{
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("along");
    QTest::addColumn<int>("value");
    QTest::newRow("long thumb") << 50 << 18 + 20 << 15;
    QTest::newRow("long thumb, above the track") << 50 << 3 << 0;
    QTest::newRow("long thumb, above the bar") << 50 << -15 << 0;
    QTest::newRow("short thumb") << 1000 << 18 + 200 << 651;
    QTest::newRow("short thumb, below the bar") << 1000 << 379 << 1000;
}

void TestScrollBarDrags::dragFromTheTrack()
{
    QFETCH(int, maximum);
    QFETCH(int, along);
    make(1, maximum);
    press(300);
    moveTo(along);
    QTEST(m_bar->Value(), "value");
    QVERIFY(m_bar->Dragging());
}

void TestScrollBarDrags::dragOfTheThumb_data()
{
    QTest::addColumn<int>("maximum");
    QTest::addColumn<int>("value");
    QTest::addColumn<int>("hold"); // into the thumb
    QTest::addColumn<int>("by");
    QTest::addColumn<int>("valueAfter");
    QTest::newRow("long, at its begin, 4 pixels") << 50 << 3 << 0 << 4 << 6;
    QTest::newRow("long, at its middle") << 50 << 3 << 60 << 40 << 33;
    QTest::newRow("long, at its end, back") << 50 << 33 << 133 << -40 << 3;
    QTest::newRow("long, beyond the maximum") << 50 << 30 << 60 << 100 << 50;
    QTest::newRow("long, beyond 0") << 50 << 30 << 60 << -80 << 0;
    QTest::newRow("short, at its middle") << 1000 << 500 << 7 << 100 << 825;
    QTest::newRow("short, by nothing") << 1000 << 500 << 13 << 0 << 500;
}

void TestScrollBarDrags::dragOfTheThumb()
{
    QFETCH(int, maximum);
    QFETCH(int, value);
    QFETCH(int, hold);
    QFETCH(int, by);
    for (const int alight : {1, 2}) {
        make(alight, maximum);
        m_bar->SetValue(value);
        const int held = thumbStart() + hold;
        press(held);
        QVERIFY(m_bar->Dragging());
        moveTo(held + (by > 0 ? 3 : -3));
        moveTo(held + by);
        QTEST(m_bar->Value(), "valueAfter");
        release(held + by);
        moveTo(held + by + 20);
        QTEST(m_bar->Value(), "valueAfter");
    }
}

void TestScrollBarDrags::pressOnTheThumbChangesNothing()
{
    make(1, 50);
    m_bar->SetValue(7);
    QSignalSpy changes(m_bar, &ScrollBar::Change);
    press(thumbStart() + 3);
    release(thumbStart() + 3);
    QVERIFY(changes.isEmpty());
    QCOMPARE(m_bar->Value(), 7);
}

/// The thumb lies over the far arrow then, and the arrow still answers.
void TestScrollBarDrags::tooShortForItsThumb()
{
    make(1, 10, 40);
    QSignalSpy changes(m_bar, &ScrollBar::Change);
    press(25);
    QCOMPARE(m_bar->Dragging(), false);
    QCOMPARE(tMove()->property("tag").toString(), QStringLiteral("UP"));
    QCOMPARE(changes.at(0).at(0).toInt(), 1);
}

void TestScrollBarDrags::tooShortToMoveIt_data()
{
    QTest::addColumn<int>("length");
    QTest::newRow("the thumb fills the track") << 36 + 14;
    QTest::newRow("no travel is left") << 36 + 26;
}

/// Where the thumb stands still, the pointer says nothing of the value.
void TestScrollBarDrags::tooShortToMoveIt()
{
    QFETCH(int, length);
    for (const int alight : {1, 2}) {
        make(alight, 10, length);
        m_bar->SetValue(7);
        QSignalSpy changes(m_bar, &ScrollBar::Change);
        press(20);
        QVERIFY(m_bar->Dragging());
        moveTo(24);
        moveTo(length - 19);
        QCOMPARE(m_bar->Value(), 7);
        QVERIFY(changes.isEmpty());
        QCOMPARE(thumbStart(), 18);
        release(length - 19);
    }
}

QTEST_MAIN(TestScrollBarDrags)
#include "tst_scrollbardrags.moc"

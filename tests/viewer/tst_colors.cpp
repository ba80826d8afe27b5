#include "viewer/Colors.h"

#include <QTest>

using namespace quorvia::viewer;

class TestColors : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void numbers_data()
    {
        QTest::addColumn<int>("number");
        QTest::addColumn<QColor>("color");
        QTest::newRow("black") << 0 << QColor(0, 0, 0);
        QTest::newRow("red is lowest") << 0x0000ff << QColor(255, 0, 0);
        QTest::newRow("blue is highest") << 0xff0000 << QColor(0, 0, 255);
        QTest::newRow("mixed") << (0xbf << 16 | 0x79 << 8) << QColor(0, 121, 191);
    }

    void numbers()
    {
        QFETCH(int, number);
        QFETCH(QColor, color);
        QCOMPARE(fromColorNumber(number), color);
        QCOMPARE(toColorNumber(color), number);
    }

    void upperBitsDoNotCount() { QCOMPARE(fromColorNumber(int(0x80ff0001u)), QColor(1, 0, 255)); }
};

QTEST_GUILESS_MAIN(TestColors)
#include "tst_colors.moc"

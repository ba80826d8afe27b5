#include "app/Colors.h"

#include <QPalette>
#include <QTest>
#include <QWidget>

using namespace quorvia::app;

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

    void propertyColors_data()
    {
        QTest::addColumn<quint32>("number");
        QTest::addColumn<QColor>("color");
        QTest::newRow("plain") << quint32(0x404040) << QColor(64, 64, 64);
        QTest::newRow("plain red") << quint32(0x0000ff) << QColor(255, 0, 0);
        QTest::newRow("face of a button") << 0x8000000Fu << QColor(1, 2, 3);
        QTest::newRow("text of a button") << 0x80000012u << QColor(4, 5, 6);
        QTest::newRow("window") << 0x80000005u << QColor(7, 8, 9);
        QTest::newRow("workspace") << 0x8000000Cu << QColor(10, 11, 12);
        QTest::newRow("names none") << 0x800000FFu << QColor(0, 0, 0);
    }

    void propertyColors()
    {
        QFETCH(quint32, number);
        QPalette palette;
        palette.setColor(QPalette::Button, QColor(1, 2, 3));
        palette.setColor(QPalette::ButtonText, QColor(4, 5, 6));
        palette.setColor(QPalette::Base, QColor(7, 8, 9));
        palette.setColor(QPalette::Mid, QColor(10, 11, 12));
        QTEST(propertyColor(number, palette), "color");
    }

    void panesHaveATextThatCanBeRead()
    {
        QWidget pane;
        QWidget label(&pane);
        const QColor own = pane.palette().color(QPalette::WindowText);
        setPaneColor(&pane, QColor(0, 121, 191));
        QCOMPARE(paneColor(&label), QColor(0, 121, 191));
        QCOMPARE(label.palette().color(QPalette::Active, QPalette::WindowText), QColor(Qt::white));
        QCOMPARE(label.palette().color(QPalette::Inactive, QPalette::WindowText), QColor(Qt::white));
        pane.setPalette(QPalette());
        setPaneColor(&pane, own == QColor(Qt::white) ? Qt::black : Qt::white);
        QCOMPARE(label.palette().color(QPalette::WindowText), own);
    }

    void upperBitsDoNotCount() { QCOMPARE(fromColorNumber(int(0x80ff0001u)), QColor(1, 0, 255)); }
};

QTEST_MAIN(TestColors)
#include "tst_colors.moc"

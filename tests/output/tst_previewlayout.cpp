// How the print window shows its page, and what is typed and drawn there. Twips.
#include "output/PreviewLayout.h"

#include <QTest>

using namespace quorvia::output;

class TestPreviewLayout : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void zooms()
    {
        QList<double> factors;
        for (const QString& text : zoomTexts())
            factors += zoomOf(text);
        QCOMPARE(factors, (QList<double>{0.1, 0.25, 0.5, 0.75, 1, 2, 3}));
        QCOMPARE(zoomTexts().at(usualZoom), QStringLiteral("50%"));
        QCOMPARE(previewSize({10806, 15738}, 0.25), QSize(2702, 3935));
    }

    void axes_data()
    {
        QTest::addColumn<int>("preview");
        QTest::addColumn<int>("frame");
        QTest::addColumn<bool>("wasShown");
        QTest::addColumn<int>("was");
        QTest::addColumn<int>("start");
        QTest::addColumn<PreviewAxis>("axis");
        QTest::newRow("fits") << 3000 << 6000 << false << 0 << 275 << PreviewAxis{false, 0, 0, 1500};
        QTest::newRow("fits now") << 3000 << 6000 << true << 40 << 275 << PreviewAxis{false, 0, 0, 1500};
        QTest::newRow("just fits") << 6000 << 6000 << false << 0 << 2 << PreviewAxis{false, 0, 0, 0};
        QTest::newRow("too high") << 7900 << 6000 << false << 40 << startDown
                                  << PreviewAxis{true, 30, 2, 350};
        QTest::newRow("too wide") << 7900 << 6000 << false << 0 << startAcross
                                  << PreviewAxis{true, 30, 30, -2450};
        QTest::newRow("much too wide")
            << 46000 << 6000 << false << 0 << startAcross << PreviewAxis{true, 411, 275, -26950};
        QTest::newRow("scrolled") << 7900 << 6000 << true << 12 << 2 << PreviewAxis{true, 30, 12, -650};
        QTest::newRow("scrolled beyond")
            << 7900 << 6000 << true << 90 << 2 << PreviewAxis{true, 30, 30, -2450};
        QTest::newRow("a twip") << 6001 << 6000 << false << 0 << 2 << PreviewAxis{true, 11, 2, 350};
    }
    void axes()
    {
        QFETCH(int, preview);
        QFETCH(int, frame);
        QFETCH(bool, wasShown);
        QFETCH(int, was);
        QFETCH(int, start);
        QTEST(previewAxis(preview, frame, {wasShown, was}, start), "axis");
    }

    void offsets()
    {
        QCOMPARE(previewOffset(0), 550);
        QCOMPARE(previewOffset(2), 350);
        QCOMPARE(previewOffset(275), -26950);
    }

    void drawing_data()
    {
        QTest::addColumn<QPoint>("from");
        QTest::addColumn<QPointF>("to");
        const QPoint upperLeft(1000, 2000);
        const QPoint lowerRight(1600, 2900);
        QTest::newRow("down right") << upperLeft << QPointF(lowerRight);
        QTest::newRow("up left") << lowerRight << QPointF(upperLeft);
        QTest::newRow("down left") << QPoint(1600, 2000) << QPointF(1000, 2900);
        QTest::newRow("up right") << QPoint(1000, 2900) << QPointF(1600, 2000);
    }
    void drawing()
    {
        QFETCH(QPoint, from);
        QFETCH(QPointF, to);
        QCOMPARE(drawnRect(from, to), QRectF(1000, 2000, 600, 900));
    }

    void clicks_data()
    {
        QTest::addColumn<QRectF>("drawn");
        QTest::addColumn<bool>("isClick");
        QTest::newRow("click") << QRectF(10, 10, 1, 1) << true;
        QTest::newRow("thin") << QRectF(10, 10, 149, 900) << true;
        QTest::newRow("low") << QRectF(10, 10, 900, 149.9) << true;
        QTest::newRow("drag") << QRectF(10, 10, 150, 150) << false;
    }
    void clicks()
    {
        QFETCH(QRectF, drawn);
        QTEST(isClick(drawn), "isClick");
    }

    void aClickKeepsTheSize()
    {
        const PageBoxes boxes{"7", "8", "200", "100"};
        const QRectF rect = withBoxSize({300, 600, 1, 1}, boxes, {15, 20}, 0.5);
        QCOMPARE(rect, QRectF(300, 600, 1500, 750)); // 15 in both directions
        QCOMPARE(boxesOf(rect, {15, 15}, 0.5), (PageBoxes{"40", "80", "200", "100"}));
    }

    void boxes_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<PageBoxes>("boxes");
        QTest::newRow("half") << 0.5 << PageBoxes{"40", "60", "200", "90"};
        QTest::newRow("whole") << 1.0 << PageBoxes{"20", "30", "100", "45"};
        QTest::newRow("thrice") << 3.0 << PageBoxes{"6.6667", "10", "33.3333", "15"};
    }
    void boxes()
    {
        QFETCH(double, zoom);
        QTEST(boxesOf({300, 600, 1500, 900}, {15, 20}, zoom), "boxes");
    }

    void theWindow()
    {
        const PrintWindowLayout places = printWindowLayout({12000, 9000}, {3500, 7000}, 400);
        QCOMPARE(places.options, QRect(100, 100, 3500, 8100));
        QCOMPARE(places.frame, QRect(3800, 200, 8000, 8000));
        QCOMPARE(places.buttons, QRect(200, 8400, 11600, 400));
    }

    void theSmallestWindow()
    {
        const QSize options(3500, 7000);
        const PrintWindowLayout places = printWindowLayout(smallestPrintWindow(options, 400), options, 400);
        QCOMPARE(places.options.size(), options);
        QCOMPARE(places.frame.width(), 3000);
        QVERIFY(!places.frame.intersects(places.options) && !places.buttons.intersects(places.frame));
        QVERIFY(!places.buttons.intersects(places.options));
    }

    void noWindow()
    {
        const PrintWindowLayout places = printWindowLayout({0, 0}, {3500, 7000}, 400);
        QCOMPARE(places.frame.size(), QSize(0, 0));
        QCOMPARE(places.buttons.width(), 0);
    }

    void copies_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("copies"); // 0: stays
        QTest::addColumn<bool>("isNumber");
        QTest::newRow("three") << "3" << 3 << true;
        QTest::newRow("blanks") << " 12 " << 12 << true;
        QTest::newRow("most") << "9999" << 9999 << true;
        QTest::newRow("more") << "10000" << 0 << true;
        QTest::newRow("far more") << "99999999999" << 0 << true;
        QTest::newRow("none") << "0" << 0 << true;
        QTest::newRow("below") << "-2" << 0 << true;
        QTest::newRow("part") << "1.5" << 0 << true;
        QTest::newRow("letters") << "abc" << 0 << false;
        QTest::newRow("with letters") << "3x" << 0 << false;
        QTest::newRow("blank") << " " << 0 << false;
    }
    void copies()
    {
        QFETCH(QString, text);
        const CopiesAnswer answer = typedCopies(text);
        QTEST(answer.copies.value_or(0), "copies");
        QTEST(answer.isNumber, "isNumber");
    }

    void whatIsSaidOfThePrinter()
    {
        QCOMPARE(printerText("Office", 3), QStringLiteral("  Office   Copies: 3"));
        QCOMPARE(printerText("%2", 1), QStringLiteral("  %2   Copies: 1"));
    }
};

QTEST_APPLESS_MAIN(TestPreviewLayout)
#include "tst_previewlayout.moc"

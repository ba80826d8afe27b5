// The benchmarks' eye: finds a marked picture wherever it stands on a screen, and only a whole one.
#include "bench/PictureFinder.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QTest>

using namespace quorvia::bench;

namespace {

const QSize screenSize(1600, 1000);

/// Paints a picture with marks of `color` at `place`, a part of whose rows is there yet.
void paintPicture(QImage& image, const QRect& place, const QColor& color, double share = 1)
{
    QPainter painter(&image);
    painter.setClipRect(place.x(), place.y(), place.width(), qRound(place.height() * share));
    painter.fillRect(place, QColor(90, 120, 60));
    for (const double across : {0.12, 0.5, 0.88}) {
        for (const double down : {0.12, 0.5, 0.88}) {
            const QPointF middle(place.x() + across * place.width(), place.y() + down * place.height());
            const QPointF half(0.04 * place.width(), 0.04 * place.height());
            painter.fillRect(QRectF(middle - half, middle + half), color);
        }
    }
}

ScreenPixels pixelsOf(const QImage& image)
{
    return {reinterpret_cast<const std::uint32_t*>(image.constBits()), image.width(), image.height(),
            int(image.bytesPerLine() / 4)};
}

} // namespace

class TestPictureFinder : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void codes_data()
    {
        QTest::addColumn<quint32>("pixel");
        QTest::addColumn<int>("code");
        QTest::newRow("red") << 0xffff0000U << 1;
        QTest::newRow("green") << 0x0000ff00U << 2;
        QTest::newRow("yellow, nearly") << 0x00f0ec10U << 3;
        QTest::newRow("magenta") << 0x00ff00ffU << 5;
        QTest::newRow("black") << 0x00000000U << 0;
        QTest::newRow("white") << 0x00ffffffU << 0;
        QTest::newRow("half a channel") << 0x00ff80ffU << 0;
    }

    void codes()
    {
        QFETCH(quint32, pixel);
        QTEST(markCode(pixel), "code");
    }

    void places_data()
    {
        QTest::addColumn<QRect>("picture");
        QTest::addColumn<QRect>("smallCopy");
        QTest::addColumn<double>("share");
        QTest::addColumn<int>("code");
        QTest::addColumn<bool>("stands");
        const QRect large(50, 0, 1500, 1000);
        QTest::newRow("as high as the screen") << large << QRect() << 1.0 << 5 << true;
        QTest::newRow("in a corner") << QRect(900, 500, 690, 460) << QRect() << 1.0 << 5 << true;
        QTest::newRow("beside a small copy")
            << QRect(300, 60, 1200, 800) << QRect(10, 10, 160, 107) << 1.0 << 5 << true;
        QTest::newRow("over a small copy")
            << QRect(300, 60, 1080, 720) << QRect(40, 850, 160, 107) << 1.0 << 5 << true;
        QTest::newRow("another colour") << large << QRect() << 1.0 << 4 << false;
        QTest::newRow("painted by half") << large << QRect() << 0.5 << 5 << false;
        QTest::newRow("last row of marks missing") << large << QRect() << 0.8 << 5 << false;
        QTest::newRow("a small copy alone") << QRect() << QRect(10, 10, 160, 107) << 1.0 << 5 << false;
        QTest::newRow("a third as wide, too small") << QRect(0, 0, 480, 320) << QRect() << 1.0 << 5 << false;
        QTest::newRow("stretched") << QRect(0, 0, 1600, 800) << QRect() << 1.0 << 5 << false;
        QTest::newRow("nothing") << QRect() << QRect() << 1.0 << 5 << false;
    }

    void places()
    {
        QFETCH(QRect, picture);
        QFETCH(QRect, smallCopy);
        QFETCH(double, share);
        QFETCH(int, code);
        QImage image(screenSize, QImage::Format_RGB32);
        image.fill(Qt::white);
        paintPicture(image, picture, Qt::magenta, share);
        paintPicture(image, smallCopy, Qt::magenta);

        const Place found = findPicture(pixelsOf(image), code);

        QTEST(!found.isEmpty(), "stands");
        if (found.isEmpty())
            return;
        constexpr int tolerance = 2 * sampleStep;
        QVERIFY2(qAbs(found.x - picture.x()) <= tolerance, qPrintable(QString::number(found.x)));
        QVERIFY2(qAbs(found.y - picture.y()) <= tolerance, qPrintable(QString::number(found.y)));
        QVERIFY2(qAbs(found.width - picture.width()) <= 2 * tolerance,
                 qPrintable(QString::number(found.width)));
    }

    void changes()
    {
        QImage image(screenSize, QImage::Format_RGB32);
        image.fill(Qt::white);
        const Place all{0, 0, screenSize.width(), screenSize.height()};
        constexpr double enough = 0.01;
        std::vector<std::uint32_t> seen;
        QCOMPARE(changedShare(pixelsOf(image), all, seen, enough), 1.0);
        QCOMPARE(changedShare(pixelsOf(image), all, seen, enough), 0.0);
        QPainter(&image).fillRect(0, 0, 160, 1000, Qt::red);
        QCOMPARE(changedShare(pixelsOf(image), all, seen, enough), 0.1);
        QCOMPARE(changedShare(pixelsOf(image), all, seen, enough), 0.0);
    }

    void slowChanges_data()
    {
        QTest::addColumn<int>("times");
        QTest::addColumn<int>("width"); // of each change, in pixels
        QTest::addColumn<int>("noticed");
        QTest::newRow("ten of half a hundredth") << 10 << 8 << 3; // at each third
        QTest::newRow("ten of a tenth") << 10 << 160 << 10;
        QTest::newRow("two of half a hundredth") << 2 << 8 << 0;
    }

    void slowChanges()
    {
        QFETCH(int, times);
        QFETCH(int, width);
        QImage image(screenSize, QImage::Format_RGB32);
        image.fill(Qt::white);
        const Place all{0, 0, screenSize.width(), screenSize.height()};
        constexpr double enough = 0.01;
        std::vector<std::uint32_t> seen;
        changedShare(pixelsOf(image), all, seen, enough);
        int noticed = 0;
        for (int i = 0; i < times; ++i) {
            QPainter(&image).fillRect(i * width, 0, width, screenSize.height(), Qt::red);
            noticed += changedShare(pixelsOf(image), all, seen, enough) > enough ? 1 : 0;
        }
        QTEST(noticed, "noticed");
    }

    void insides()
    {
        const QImage image(screenSize, QImage::Format_RGB32);
        const Place inside = insideOf(pixelsOf(image), {-20, 900, 1700, 300});
        QCOMPARE(QRect(inside.x, inside.y, inside.width, inside.height), QRect(0, 900, 1600, 100));
    }
};

QTEST_GUILESS_MAIN(TestPictureFinder)
#include "tst_picturefinder.moc"

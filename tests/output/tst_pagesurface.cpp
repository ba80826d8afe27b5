// The composed page, by its pixels. At 72 dots an inch a pixel is 20 twips; the page has 500 x 750 of them.
#include "output/PageSurface.h"

#include <QElapsedTimer>
#include <QFile>
#include <QTest>

#include <algorithm>

using namespace quorvia::output;

namespace {

constexpr QSize paper(11100, 16100);
constexpr int twips = 20; // a pixel
constexpr QRgb white = 0xffffffff;
constexpr QRgb dark = 0xff404040;
constexpr QRgb middle = 0xff808080;
constexpr QRgb red = 0xffff0000;
constexpr QRgb green = 0xff00ff00;
constexpr QRgb blue = 0xff0000ff;
constexpr QRgb yellow = 0xffffff00;

/// Red, green, blue and yellow quarters, row by row.
QImage quarters(QSize size)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            const bool right = x >= size.width() / 2;
            const bool low = y >= size.height() / 2;
            image.setPixel(x, y, low ? (right ? yellow : blue) : (right ? green : red));
        }
    }
    return image;
}

QImage filled(QSize size, const QColor& color)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

/// A picture of 200 x 150 pixels of the page.
PageContent usual()
{
    PageContent content{.picture = quarters({400, 300}), .imageSize = {4000, 3000}, .printer = paper};
    content.resolution = 72;
    content.font.setFamily(QStringLiteral("DejaVu Sans"));
    content.font.setPointSize(12);
    return content;
}

QImage composed(const PageContent& content)
{
    PageSurface surface;
    return surface.compose(content) ? surface.page() : QImage();
}

/// Where `page` has pixels that are not white.
QRect inked(const QImage& page, QRect within = {})
{
    if (within.isNull())
        within = page.rect();
    QRect ink;
    for (int y = within.top(); y <= within.bottom(); ++y) {
        for (int x = within.left(); x <= within.right(); ++x) {
            if (page.pixel(x, y) != white)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

/// Most memory that the program has held since resetPeak(), in bytes.
qint64 peak()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return -1;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).simplified().split(' ').first().toLongLong() * 1024;
    }
    return -1;
}

bool resetPeak()
{
    QFile file(QStringLiteral("/proc/self/clear_refs"));
    return file.open(QIODevice::WriteOnly) && file.write("5") == 1;
}

} // namespace

class TestPageSurface : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void alignments_data()
    {
        QTest::addColumn<int>("area");
        QTest::addColumn<QSize>("image"); // twips
        QTest::addColumn<QRect>("rect");  // pixels
        const QSize fits(4000, 3000);
        QTest::newRow("centre") << 0 << fits << QRect(150, 300, 200, 150);
        QTest::newRow("top centre") << 1 << fits << QRect(150, 0, 200, 150);
        QTest::newRow("top left") << 2 << fits << QRect(0, 0, 200, 150);
        QTest::newRow("top left as it is") << 3 << fits << QRect(0, 0, 200, 150);
        QTest::newRow("custom") << 4 << fits << QRect(15, 30, 75, 60);
        QTest::newRow("centre as it is") << 5 << fits << QRect(150, 300, 200, 150);
        QTest::newRow("wide") << 2 << QSize(20000, 10000) << QRect(0, 0, 495, 248);
        QTest::newRow("wide as it is") << 3 << QSize(20000, 10000) << QRect(0, 0, 500, 500);
    }
    void alignments()
    {
        QFETCH(int, area);
        QFETCH(QSize, image);
        QFETCH(QRect, rect);
        PageContent content = usual();
        content.area = AreaMode(area);
        content.imageSize = image;
        content.custom = {20, 40, 100, 80};
        const QImage page = composed(content);
        QCOMPARE(page.size(), QSize(500, 750));
        QCOMPARE(page.format(), QImage::Format_RGB32);
        QCOMPARE(inked(page), rect);
        QCOMPARE(page.pixel(rect.topLeft() + QPoint(2, 2)), red);
        if (image.width() <= paper.width())
            QCOMPARE(page.pixel(rect.topRight() + QPoint(-2, 2)), green);
        QCOMPARE(page.pixel(rect.bottomLeft() + QPoint(2, -2)), blue);
    }

    void resolutions()
    {
        PageContent content = usual();
        content.resolution = 300;
        const QImage page = composed(content);
        QCOMPARE(page.size(), QSize(2083, 3125));
        QCOMPARE(inked(page), QRect(625, 1250, 833, 625));
    }

    void decorations_data()
    {
        QTest::addColumn<Decorations>("decorations");
        QTest::addColumn<QPoint>("at"); // twips
        QTest::addColumn<QRgb>("color");
        // The picture lies at (3000, 6000) to (7000, 9000).
        QTest::newRow("circle") << Decorations{.circle = true} << QPoint(2800, 5900) << middle;
        QTest::newRow("circle below") << Decorations{.circle = true} << QPoint(7200, 9100) << middle;
        QTest::newRow("outside of a circle") << Decorations{.circle = true} << QPoint(2620, 5620) << white;
        QTest::newRow("square") << Decorations{.square = true} << QPoint(2840, 5840) << dark;
        QTest::newRow("square below") << Decorations{.square = true} << QPoint(7140, 9140) << dark;
        QTest::newRow("shadow") << Decorations{.shadow = true} << QPoint(7060, 9060) << dark;
        QTest::newRow("left of a shadow") << Decorations{.shadow = true} << QPoint(2980, 9060) << white;
        QTest::newRow("frame") << Decorations{.frame = true} << QPoint(2850, 7000) << dark;
        QTest::newRow("within a frame") << Decorations{.frame = true} << QPoint(2940, 7000) << white;
        QTest::newRow("under the picture")
            << Decorations{.circle = true, .square = true} << QPoint(3100, 6100) << red;
    }
    void decorations()
    {
        QFETCH(Decorations, decorations);
        QFETCH(QPoint, at);
        PageContent content = usual();
        content.decorations = decorations;
        QTEST(composed(content).pixel(at / twips), "color");
    }

    void framesByTheirWidths()
    {
        PageContent content = usual();
        content.resolution = 1440; // a pixel a twip
        content.printer = {4100, 4100};
        content.imageSize = {1000, 1000};
        const auto across = [&](const Decorations& wanted) { // along the left side
            content.decorations = wanted;
            const QImage page = composed(content);
            QString colors;
            for (int x = 780; x < 920; x += 10)
                colors += page.pixel(x, 1500) == dark ? u'd' : page.pixel(x, 1500) == white ? u'.' : u'?';
            return colors;
        };
        // The line runs along 850: 75 wide, or 30.
        QCOMPARE(across({.frame = true}), QStringLiteral("....ddddddd..."));
        QCOMPARE(across({.lightFrame = true}), QStringLiteral("......ddd....."));
        QCOMPARE(across({.lightFrame = true, .frame = true}), QStringLiteral("....dd...dd..."));
    }

    void aTrail()
    {
        PageContent content = usual();
        content.decorations = {.trail = true};
        const QImage page = composed(content);
        QCOMPARE(inked(page), QRect(150, 300, 300, 220)); // 2000 and 1400 twips more
        QCOMPARE(page.pixel(448, 518), yellow);           // the lowest copy
        QCOMPARE(page.pixel(152, 302), red);
        QCOMPARE(page.pixel(152, 460), white);
    }

    void tiles_data()
    {
        QTest::addColumn<QSize>("image");
        QTest::newRow("a few") << QSize(4000, 3000);
        QTest::newRow("odd") << QSize(1230, 970);
        QTest::newRow("many") << QSize(60, 50);
    }
    void tiles()
    {
        QFETCH(QSize, image);
        PageContent content = usual();
        content.imageSize = image;
        content.area = AreaMode::Custom; // the place is not used
        content.custom = QRectF(QPointF(77, 55), QSizeF(image) / 15);
        content.title = QStringLiteral("under the tiles");
        content.decorations = {.tile = true};
        const QImage page = composed(content);
        QCOMPARE(inked(page), page.rect());
        const double across = image.width() / 20.0;
        const double down = image.height() / 20.0;
        for (const int column : {0, 1, int(500 / across) - 1}) {
            for (const int row : {0, 1, int(750 / down) - 1}) {
                const int left = qRound(column * across);
                const int top = qRound(row * down);
                if (across >= 10) {
                    QCOMPARE(page.pixel(left + 1, top + 1), red);
                    QCOMPARE(page.pixel(qRound((column + 1) * across) - 2, top + 1), green);
                } else {
                    QVERIFY(qRed(page.pixel(left, top)) > 150);
                }
            }
        }
    }

    void tilesBelowAPixel_data()
    {
        QTest::addColumn<QSizeF>("pixels"); // of the screen
        QTest::newRow("twips") << QSizeF(0.07, 0.07);
        QTest::newRow("wide and flat") << QSizeF(500, 1e-9);
        QTest::newRow("narrow and high") << QSizeF(0.07, 5000);
    }
    void tilesBelowAPixel()
    {
        QFETCH(QSizeF, pixels);
        PageContent content = usual();
        content.picture = filled({10, 10}, Qt::blue);
        content.area = AreaMode::Custom;
        content.custom = QRectF({}, pixels);
        content.decorations = {.tile = true};
        QElapsedTimer timer;
        timer.start();
        const QImage page = composed(content);
        QVERIFY2(timer.elapsed() < 5000, qPrintable(QString::number(timer.elapsed())));
        QCOMPARE(page.pixel(499, 749), blue);
        QCOMPARE(page.pixel(250, 300), blue);
    }

    void aTransparentPicture()
    {
        PageContent content = usual();
        content.picture = filled({10, 10}, QColor(255, 0, 0, 128));
        content.decorations = {.shadow = true};
        const QImage page = composed(content);
        const QRgb lit = page.pixel(151, 375); // over the white left of the shadow
        const QRgb dim = page.pixel(250, 375); // over the shadow
        QCOMPARE(qRed(lit), 255);
        QVERIFY(std::abs(qGreen(lit) - 127) <= 1);
        QVERIFY(std::abs(qRed(dim) - 160) <= 1 && std::abs(qGreen(dim) - 32) <= 1);
    }

    void transparentTilesBlendOnce()
    {
        for (const QSize size : {QSize(1230, 970), QSize(70, 50)}) { // one by one; as rows
            PageContent content = usual();
            content.picture = filled({10, 10}, QColor(255, 0, 0, 128));
            content.imageSize = size;
            content.decorations = {.tile = true};
            const QImage page = composed(content);
            int least = 255;
            for (int y = 0; y < page.height(); ++y) {
                for (int x = 0; x < page.width(); ++x)
                    least = std::min(least, qGreen(page.pixel(x, y)));
            }
            QVERIFY2(least >= 126, qPrintable(QString::number(least))); // no seam
            QCOMPARE(qGreen(page.pixel(499, 749)), qGreen(page.pixel(0, 0)));
        }
    }

    void texts_data()
    {
        QTest::addColumn<int>("align");
        QTest::newRow("left") << 0;
        QTest::newRow("centre") << 1;
        QTest::newRow("right") << 2;
    }
    void texts()
    {
        QFETCH(int, align);
        PageContent content = usual();
        content.title = QStringLiteral("HHHHHHHHHHHH");
        content.titleAlign = TitleAlign(align);
        content.footer = QStringLiteral("dune.jpg");
        content.hasFooter = true;
        content.textColor = Qt::blue;
        content.picture = {};
        const QImage page = composed(content);
        const QRect title = inked(page, QRect(0, 0, 500, 100));
        const QRect footer = inked(page, QRect(0, 600, 500, 150));
        QVERIFY(title.height() >= 8 && title.height() <= 14); // letters of 12 pixels
        QVERIFY(title.top() >= 5 && title.bottom() < 25);
        constexpr int bearing = 4;
        if (align == 0)
            QVERIFY(title.left() >= 5 && title.left() <= 5 + bearing);
        if (align == 1)
            QVERIFY(std::abs(title.left() - (499 - title.right())) <= bearing);
        if (align == 2)
            QVERIFY(title.right() <= 495 && title.right() >= 495 - bearing);
        QVERIFY(!footer.isEmpty() && std::abs(footer.left() - (499 - footer.right())) <= bearing);
        QVERIFY(footer.bottom() <= 745 && footer.bottom() >= 738);
        QCOMPARE(inked(page, QRect(0, 100, 500, 500)), QRect());
        int bluest = 255;
        for (int x = title.left(); x <= title.right(); ++x)
            bluest = std::min(bluest, qRed(page.pixel(x, title.center().y())));
        QVERIFY(bluest < 100);
    }

    void aTitleTakesRoom()
    {
        PageContent content = usual();
        content.area = AreaMode::TopLeft;
        content.title = QStringLiteral("x");
        PageSurface surface;
        QVERIFY(surface.compose(content));
        const double room = surface.layout().titleRoom;
        QVERIFY(room > 200 + 12 * twips && room < 200 + 20 * twips);
        const int top = qRound(room / twips);
        QCOMPARE(surface.page().pixel(1, top), red);
        QCOMPARE(surface.page().pixel(1, top - 1), white);
    }

    void linesInAFileNameStayOnOneLine()
    {
        PageContent content = usual();
        content.picture = {};
        content.hasFooter = true;
        content.footer = QStringLiteral("a\nb");
        const QImage page = composed(content);
        content.footer = QStringLiteral("a b");
        QCOMPARE(page, composed(content));
        QVERIFY(!inked(page).isEmpty());
    }

    void sameContentIsComposedOnce()
    {
        PageSurface surface;
        PageContent content = usual();
        QVERIFY(surface.compose(content));
        const quint64 first = surface.number();
        content.title = QStringLiteral("a\nb");
        QVERIFY(surface.compose(content));
        QVERIFY(surface.number() > first);
        const quint64 second = surface.number();
        QVERIFY(surface.compose(content));
        QCOMPARE(surface.number(), second);
        surface.dropScaled();
        const QImage before = surface.page();
        content.title.clear();
        QVERIFY(surface.compose(content));
        QCOMPARE(surface.page(), composed(content));
        QVERIFY(before != surface.page());
    }

    void noPage_data()
    {
        QTest::addColumn<QSize>("printer");
        QTest::newRow("no paper") << QSize(0, 0);
        QTest::newRow("margins only") << QSize(1100, 1100);
    }
    void noPage()
    {
        QFETCH(QSize, printer);
        PageContent content = usual();
        content.printer = printer;
        content.title = QStringLiteral("x");
        content.decorations = {true, true, true, true, true, true, true};
        PageSurface surface;
        QVERIFY(surface.compose(content));
        QVERIFY(surface.page().isNull());
    }

    void hugeSizesTakeNoMemory_data()
    {
        QTest::addColumn<QRectF>("custom");
        QTest::addColumn<Decorations>("decorations");
        QTest::addColumn<bool>("alpha");
        const QRectF huge(0, 0, 1e6, 1e6);
        QTest::newRow("plain") << huge << Decorations{} << false;
        QTest::newRow("trail") << huge << Decorations{.trail = true} << false;
        QTest::newRow("transparent trail") << huge << Decorations{.trail = true} << true;
        QTest::newRow("tile") << huge << Decorations{.tile = true} << false;
        QTest::newRow("small tiles") << QRectF(0, 0, 3, 40) << Decorations{.tile = true} << true;
        QTest::newRow("all around it") << QRectF(-5e5, -5e5, 1e6, 1e6)
                                       << Decorations{true, true, true, true, true, false, false} << false;
        QTest::newRow("farthest") << QRectF(-1e5, -1e5, 1e99, 1e99)
                                  << Decorations{true, true, true, true, true, false, true} << false;
    }
    void hugeSizesTakeNoMemory()
    {
        QFETCH(QRectF, custom);
        QFETCH(Decorations, decorations);
        QFETCH(bool, alpha);
        PageContent content = usual();
        if (alpha)
            content.picture = filled({300, 200}, QColor(0, 0, 255, 120));
        content.resolution = 600; // a page of 104 MB
        content.area = AreaMode::Custom;
        content.custom = custom;
        content.decorations = decorations;
        QVERIFY(resetPeak());
        const qint64 before = peak();
        const QImage page = composed(content);
        const qint64 bytes = page.sizeInBytes();
        QVERIFY(bytes > 100'000'000);
        QVERIFY(page.pixel(page.width() / 2, page.height() / 2) != white);
        const qint64 taken = peak() - before;
        QVERIFY2(taken <= 2 * bytes + (bytes / 10),
                 qPrintable(QString::number(double(taken) / double(bytes))));
    }

    void aHundredMegapixels()
    {
        PageContent content = usual();
        content.resolution = 300;
        content.picture = QImage(12000, 8400, QImage::Format_RGB32);
        content.picture.fill(green);
        content.imageSize = {180000, 126000};
        const QImage page = composed(content);
        QCOMPARE(page.pixel(1000, 1560), green);
        QCOMPARE(inked(page).width(), 2063); // 9900 twips, from 50 on
    }
};

QTEST_MAIN(TestPageSurface)
#include "tst_pagesurface.moc"

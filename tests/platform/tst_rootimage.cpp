// What the root window shows, by points; and how it is cut into requests.
#include "platform/RootImage.h"

#include <QImageReader>
#include <QtTest>

using namespace quorvia::platform;
using Style = WallpaperStyle;

Q_DECLARE_METATYPE(quorvia::platform::WallpaperStyle)

namespace {

constexpr QRgb red = qRgb(255, 0, 0);
constexpr QRgb green = qRgb(0, 255, 0);
constexpr QRgb blue = qRgb(0, 0, 255);
constexpr QRgb white = qRgb(255, 255, 255);
constexpr QRgb black = qRgb(0, 0, 0);

/// Red and green above blue and white, each a quarter.
QImage quarters(int width, int height)
{
    QImage image(width, height, QImage::Format_RGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const bool isLeft = x < width / 2;
            image.setPixel(x, y, y < height / 2 ? (isLeft ? red : green) : (isLeft ? blue : white));
        }
    }
    return image;
}

struct Point
{
    int x;
    int y;
    QRgb colour;
};
using Points = QList<Point>;

} // namespace

Q_DECLARE_METATYPE(Point)

class TestRootImage : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void shows_data()
    {
        QTest::addColumn<QSize>("picture");
        QTest::addColumn<QList<QRect>>("screens");
        QTest::addColumn<Style>("style");
        QTest::addColumn<Points>("points");
        const QList<QRect> one = {{0, 0, 100, 80}};
        const QList<QRect> two = {{0, 0, 60, 80}, {60, 20, 40, 60}}; // with a gap above the second
        QTest::newRow("stretch up") << QSize(20, 20) << one << Style::Stretch
                                    << Points{{0, 0, red},     {99, 0, green}, {0, 79, blue},
                                              {99, 79, white}, {40, 30, red},  {60, 50, white}};
        QTest::newRow("stretch down") << QSize(400, 400) << one << Style::Stretch
                                      << Points{{0, 0, red},     {99, 0, green}, {0, 79, blue},
                                                {99, 79, white}, {48, 38, red},  {51, 41, white}};
        QTest::newRow("stretch on two")
            << QSize(40, 40) << two << Style::Stretch
            << Points{{0, 0, red},    {59, 0, green}, {0, 79, blue},   {59, 79, white}, {60, 19, black},
                      {99, 0, black}, {60, 20, red},  {99, 20, green}, {60, 79, blue},  {99, 79, white}};
        QTest::newRow("centre") << QSize(20, 10) << one << Style::Centre
                                << Points{{39, 40, black}, {40, 34, black}, {40, 35, red},   {59, 35, green},
                                          {40, 44, blue},  {59, 44, white}, {60, 44, black}, {59, 45, black}};
        QTest::newRow("centre a large one") << QSize(300, 200) << one << Style::Centre
                                            << Points{{0, 0, red},    {49, 39, red},   {50, 39, green},
                                                      {49, 40, blue}, {50, 40, white}, {99, 79, white}};
        QTest::newRow("centre on two") << QSize(50, 10) << two << Style::Centre
                                       << Points{{4, 40, black},  {5, 35, red},    {54, 35, green},
                                                 {55, 35, black}, {57, 47, black}, // the first
                                                 {60, 44, black}, {60, 45, red},   {79, 45, red},
                                                 {80, 45, green}, {99, 45, green}, // cut off
                                                 {60, 54, blue},  {99, 55, black}};
        QTest::newRow("tile") << QSize(20, 10) << one << Style::Tile
                              << Points{{0, 0, red},  {10, 0, green}, {0, 5, blue},    {10, 5, white},
                                        {20, 0, red}, {0, 10, red},   {99, 79, white}, {80, 70, red}};
        QTest::newRow("tile over two, and the gap")
            << QSize(44, 44) << two << Style::Tile
            << Points{{44, 0, red}, {65, 0, red}, {66, 0, green}, {66, 22, white}, {88, 44, red}};
        QTest::newRow("tile a large one")
            << QSize(300, 200) << one << Style::Tile << Points{{0, 0, red}, {99, 79, red}};
        QTest::newRow("no screens") << QSize(20, 20) << QList<QRect>() << Style::Stretch
                                    << Points{{0, 0, red}, {99, 79, white}};
    }
    void shows()
    {
        QFETCH(QSize, picture);
        QFETCH(QList<QRect>, screens);
        QFETCH(Style, style);
        QFETCH(Points, points);
        const QImage root =
            rootImage(quarters(picture.width(), picture.height()), QSize(100, 80), screens, style);
        QCOMPARE(root.size(), QSize(100, 80));
        QCOMPARE(root.format(), QImage::Format_RGB32);
        for (const Point& point : points)
            QVERIFY2(root.pixel(point.x, point.y) == point.colour,
                     qPrintable(QString("%1,%2 is %3")
                                    .arg(point.x)
                                    .arg(point.y)
                                    .arg(root.pixel(point.x, point.y), 0, 16)));
    }

    void smallTilesAreQuick()
    {
        QImage dot(1, 1, QImage::Format_RGB32);
        dot.fill(Qt::green);
        const QImage root = rootImage(dot, QSize(4000, 3000), {}, Style::Tile);
        QCOMPARE(root.pixel(0, 0), green);
        QCOMPARE(root.pixel(3999, 2999), green);
    }

    void transparentPixelsAreBlack()
    {
        QImage glass(10, 10, QImage::Format_ARGB32);
        glass.fill(QColor(255, 255, 255, 0));
        glass.setPixelColor(5, 5, Qt::red);
        for (const Style style : {Style::Centre, Style::Tile}) {
            const QImage root = rootImage(glass, QSize(10, 10), {}, style);
            QCOMPARE(root.pixel(0, 0), black);
            QCOMPARE(root.pixel(5, 5), red);
        }
    }

    void aPictureForAFinerScreenHasItsOwnPixels()
    {
        QImage fine = quarters(20, 10);
        fine.setDevicePixelRatio(2);
        QCOMPARE(rootImage(fine, QSize(100, 80), {}, Style::Centre),
                 rootImage(quarters(20, 10), QSize(100, 80), {}, Style::Centre));
        QCOMPARE(rootImage(fine, QSize(100, 80), {}, Style::Tile),
                 rootImage(quarters(20, 10), QSize(100, 80), {}, Style::Tile));
    }

    void nothingToShow()
    {
        QVERIFY(rootImage(QImage(), QSize(100, 80), {}, Style::Tile).isNull());
        QVERIFY(rootImage(quarters(2, 2), QSize(), {}, Style::Tile).isNull());
    }

    void requests_data()
    {
        QTest::addColumn<qint64>("limit");
        QTest::addColumn<qint64>("bytesPerRow");
        QTest::addColumn<int>("rows");
        QTest::newRow("exactly one") << qint64(128) << qint64(100) << 1;
        QTest::newRow("one byte short") << qint64(127) << qint64(100) << 0;
        QTest::newRow("two") << qint64(228) << qint64(100) << 2;
        QTest::newRow("one short of two") << qint64(227) << qint64(100) << 1;
        QTest::newRow("the least that a server takes") << qint64(16384) << qint64(5120) << 3;
        QTest::newRow("the most") << qint64(4) * 4194303 << qint64(7680) << 136;
        QTest::newRow("a row beyond all") << qint64(4) * 4194303 << qint64(1 << 20) << 0;
        QTest::newRow("nothing") << qint64(0) << qint64(4) << 0;
    }
    void requests()
    {
        QFETCH(qint64, limit);
        QFETCH(qint64, bytesPerRow);
        QTEST(rowsPerRequest(limit, bytesPerRow), "rows");
    }

    void readsAPictureOfAnySize()
    {
        QTemporaryDir home;
        const QString path = home.filePath("a.bmp");
        QVERIFY(quarters(2000, 600).save(path));
        const int before = QImageReader::allocationLimit();
        QImageReader::setAllocationLimit(1); // megabytes
        const bool isRefused = QImageReader(path).read().isNull();
        const QImage picture = wallpaperPicture(path);
        const int after = QImageReader::allocationLimit();
        QImageReader::setAllocationLimit(before);
        QVERIFY(isRefused);
        QCOMPARE(picture.size(), QSize(2000, 600));
        QCOMPARE(after, 1);
    }

    void whatIsNoPicture()
    {
        QTemporaryDir home;
        QFile file(home.filePath("a.bmp"));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("BM is not enough") > 0);
        file.close();
        for (const QString& path : {file.fileName(), home.filePath("none.bmp")}) {
            QString why;
            QVERIFY(wallpaperPicture(path, &why).isNull());
            QVERIFY(!why.isEmpty());
        }
    }
};

QTEST_GUILESS_MAIN(TestRootImage)
#include "tst_rootimage.moc"

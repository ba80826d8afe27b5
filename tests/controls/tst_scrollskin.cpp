#include "controls/ScrollComposition.h"
#include "controls/ScrollSkin.h"

#include <QPainter>
#include <QTest>

#include <cmath>

using namespace quorvia::controls;

namespace {

struct Named
{
    const char* name;
    SkinRole role;
    QSize size;
};

constexpr Named roles[] = {
    {"vspace", SkinRole::vspace, {18, 18}},         {"hspace", SkinRole::hspace, {18, 18}},
    {"varrowtop", SkinRole::varrowtop, {18, 18}},   {"varrowbottom", SkinRole::varrowbottom, {18, 18}},
    {"harrowleft", SkinRole::harrowleft, {18, 18}}, {"harrowright", SkinRole::harrowright, {18, 18}},
    {"vsepbg", SkinRole::vsepbg, {18, 18}},         {"hsepbg", SkinRole::hsepbg, {18, 18}},
    {"vseptop", SkinRole::vseptop, {18, 5}},        {"vsepbottom", SkinRole::vsepbottom, {18, 5}},
    {"hsepleft", SkinRole::hsepleft, {5, 18}},      {"hsepright", SkinRole::hsepright, {5, 18}},
    {"vsepmid", SkinRole::vsepmid, {18, 4}},        {"hsepmid", SkinRole::hsepmid, {4, 18}},
};
static_assert(std::size(roles) == skinRoleCount);

constexpr SkinState states[] = {SkinState::Normal, SkinState::Hovered, SkinState::Pressed,
                                SkinState::Focused};
static_assert(std::size(states) == skinStateCount);

constexpr double ratios[] = {1, 1.25, 1.5, 2, 3};

QImage pixels(SkinRole role, qreal ratio, SkinState state = SkinState::Normal)
{
    QImage image = ScrollSkin::forRatio(ratio)
                       ->picture(role, state)
                       .toImage()
                       .convertToFormat(QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(1);
    return image;
}

QImage rows(const QImage& image, int first, int count)
{
    return image.copy(0, first, image.width(), count);
}

QImage lyingDown(const QImage& image)
{
    QImage lying(image.size().transposed(), image.format());
    for (int y = 0; y < lying.height(); ++y) {
        for (int x = 0; x < lying.width(); ++x)
            lying.setPixel(x, y, image.pixel(y, x));
    }
    return lying;
}

double luminance(QRgb color)
{
    const auto linear = [](int channel) {
        const double value = channel / 255.0;
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

double contrast(QRgb one, QRgb other)
{
    const double light = std::max(luminance(one), luminance(other));
    const double dark = std::min(luminance(one), luminance(other));
    return (light + 0.05) / (dark + 0.05);
}

/// What `paint` leaves of a surface `length` units long that begins `offset` units into a window, down it or
/// along it.
template <typename Paint>
QImage surface(int offset, int length, qreal ratio, Paint paint, Qt::Orientation orientation = Qt::Vertical)
{
    const bool upright = orientation == Qt::Vertical;
    const int begin = qRound(offset * ratio);
    const int end = qRound((offset + length) * ratio);
    const int width = qRound(18 * ratio);
    const QSize size(width, end + 40);
    QImage window(upright ? size : size.transposed(), QImage::Format_ARGB32_Premultiplied);
    window.setDevicePixelRatio(ratio);
    window.fill(Qt::transparent);
    QPainter painter(&window);
    painter.translate(upright ? QPoint(0, offset) : QPoint(offset, 0));
    paint(painter);
    painter.end();
    window.setDevicePixelRatio(1);
    const QRect place(0, begin, width, end - begin);
    return window.copy(upright ? place : QRect(begin, 0, end - begin, width));
}

void addRatios()
{
    QTest::addColumn<double>("ratio");
    for (const double ratio : ratios)
        QTest::addRow("%g", ratio) << ratio;
}

} // namespace

class TestScrollSkin : public QObject
{
    Q_OBJECT

  private Q_SLOTS:
    void pictures_data();
    void pictures();
    void oneLookOfTheTrack();
    void looksDiffer_data();
    void looksDiffer();
    void tilesHaveNoSeam_data() { addRatios(); }
    void tilesHaveNoSeam();
    void endsJoinTheFill_data() { addRatios(); }
    void endsJoinTheFill();
    void turnedPictures_data() { addRatios(); }
    void turnedPictures();
    void edgesAreSharp_data() { addRatios(); }
    void edgesAreSharp();
    void thumbStandsOut_data();
    void thumbStandsOut();
    void sharing();
    void drawnOnce();
    void composedTrack_data();
    void composedTrack();
    void composedLyingTrack_data() { composedTrack_data(); }
    void composedLyingTrack();
    void composedThumb_data();
    void composedThumb();
    void composedLying_data() { addRatios(); }
    void composedLying();
    void painterIsLeftAsItWas_data();
    void painterIsLeftAsItWas();
};

void TestScrollSkin::pictures_data()
{
    QTest::addColumn<SkinRole>("role");
    QTest::addColumn<QSize>("size");
    QTest::addColumn<double>("ratio");
    for (const Named& named : roles) {
        for (const double ratio : ratios)
            QTest::addRow("%s at %g", named.name, ratio) << named.role << named.size << ratio;
    }
}

void TestScrollSkin::pictures()
{
    QFETCH(SkinRole, role);
    QFETCH(QSize, size);
    QFETCH(double, ratio);
    QCOMPARE(skinSize(role), size);
    for (const SkinState state : states) {
        const QPixmap picture = ScrollSkin(ratio).picture(role, state);
        QCOMPARE(picture.size(), QSize(qRound(size.width() * ratio), qRound(size.height() * ratio)));
        QCOMPARE(picture.devicePixelRatio(), ratio);
        const QImage image = picture.toImage();
        int seen = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                seen += qAlpha(image.pixel(x, y)) == 255 ? 1 : 0;
        }
        QVERIFY(seen > 0);
        const bool laidOver = role == SkinRole::varrowtop || role == SkinRole::varrowbottom ||
                              role == SkinRole::harrowleft || role == SkinRole::harrowright ||
                              role == SkinRole::vsepmid || role == SkinRole::hsepmid;
        QCOMPARE(seen == image.width() * image.height(), !laidOver);
    }
}

void TestScrollSkin::oneLookOfTheTrack()
{
    for (const SkinState state : states) {
        QCOMPARE(pixels(SkinRole::vspace, 1, state), pixels(SkinRole::vspace, 1));
        QCOMPARE(pixels(SkinRole::hspace, 1, state), pixels(SkinRole::hspace, 1));
    }
}

void TestScrollSkin::looksDiffer_data()
{
    QTest::addColumn<SkinRole>("role");
    for (const Named& named : roles) {
        if (named.role != SkinRole::vspace && named.role != SkinRole::hspace)
            QTest::newRow(named.name) << named.role;
    }
}

void TestScrollSkin::looksDiffer()
{
    QFETCH(SkinRole, role);
    const QImage normal = pixels(role, 1);
    const QImage hovered = pixels(role, 1, SkinState::Hovered);
    const QImage pressed = pixels(role, 1, SkinState::Pressed);
    QVERIFY(normal != hovered);
    QVERIFY(normal != pressed);
    QVERIFY(hovered != pressed);
}

void TestScrollSkin::tilesHaveNoSeam()
{
    QFETCH(double, ratio);
    for (const SkinState state : states) {
        for (const SkinRole role : {SkinRole::vspace, SkinRole::vsepbg}) {
            const QImage tile = pixels(role, ratio, state);
            for (int y = 1; y < tile.height(); ++y)
                QCOMPARE(rows(tile, y, 1), rows(tile, 0, 1));
        }
    }
}

void TestScrollSkin::endsJoinTheFill()
{
    QFETCH(double, ratio);
    for (const SkinState state : states) {
        const QImage fill = rows(pixels(SkinRole::vsepbg, ratio, state), 0, 1);
        const QImage top = pixels(SkinRole::vseptop, ratio, state);
        QCOMPARE(rows(top, top.height() - 1, 1), fill);
        QCOMPARE(rows(pixels(SkinRole::vsepbottom, ratio, state), 0, 1), fill);
    }
}

void TestScrollSkin::turnedPictures()
{
    QFETCH(double, ratio);
    constexpr std::pair<SkinRole, SkinRole> lying[] = {
        {SkinRole::vspace, SkinRole::hspace},
        {SkinRole::varrowtop, SkinRole::harrowleft},
        {SkinRole::varrowbottom, SkinRole::harrowright},
        {SkinRole::vsepbg, SkinRole::hsepbg},
        {SkinRole::vseptop, SkinRole::hsepleft},
        {SkinRole::vsepbottom, SkinRole::hsepright},
        {SkinRole::vsepmid, SkinRole::hsepmid},
    };
    for (const SkinState state : states) {
        for (const auto& [standing, laid] : lying)
            QCOMPARE(pixels(laid, ratio, state), lyingDown(pixels(standing, ratio, state)));
        QCOMPARE(pixels(SkinRole::varrowbottom, ratio, state),
                 pixels(SkinRole::varrowtop, ratio, state).mirrored());
        QCOMPARE(pixels(SkinRole::vsepbottom, ratio, state),
                 pixels(SkinRole::vseptop, ratio, state).mirrored());
    }
    QVERIFY(pixels(SkinRole::varrowbottom, ratio) != pixels(SkinRole::varrowtop, ratio));
    QVERIFY(pixels(SkinRole::harrowleft, ratio) != pixels(SkinRole::harrowright, ratio));
}

void TestScrollSkin::edgesAreSharp()
{
    QFETCH(double, ratio);
    const int margin = qRound(3 * ratio);
    const int hairline = std::max(1, int(ratio));
    const QImage fill = pixels(SkinRole::vsepbg, ratio);
    const QImage space = pixels(SkinRole::vspace, ratio);
    for (int x = 0; x < margin; ++x) {
        QCOMPARE(fill.pixel(x, 0), space.pixel(x, 0));
        QCOMPARE(fill.pixel(fill.width() - 1 - x, 0), space.pixel(space.width() - 1 - x, 0));
    }
    const QRgb border = fill.pixel(margin, 0);
    QVERIFY(border != space.pixel(margin, 0));
    for (int x = 0; x < hairline; ++x) {
        QCOMPARE(fill.pixel(margin + x, 0), border);
        QCOMPARE(fill.pixel(fill.width() - 1 - margin - x, 0), border);
    }
    // Behind the border the fill is at once as light as it gets.
    QVERIFY(qGray(fill.pixel(margin + hairline, 0)) > 250);

    const QImage grip = pixels(SkinRole::vsepmid, ratio);
    for (int y = 0; y < grip.height(); ++y) {
        const bool line = y < hairline || y >= grip.height() - hairline;
        QCOMPARE(qAlpha(grip.pixel(grip.width() / 2, y)), line ? 255 : 0);
    }
}

void TestScrollSkin::thumbStandsOut_data()
{
    QTest::addColumn<SkinState>("state");
    QTest::newRow("normal") << SkinState::Normal;
    QTest::newRow("hovered") << SkinState::Hovered;
    QTest::newRow("pressed") << SkinState::Pressed;
    QTest::newRow("focused") << SkinState::Focused;
}

void TestScrollSkin::thumbStandsOut()
{
    QFETCH(SkinState, state);
    const QRgb border = pixels(SkinRole::vsepbg, 1, state).pixel(3, 0);
    QVERIFY(contrast(border, pixels(SkinRole::vspace, 1).pixel(9, 0)) >= 3);
}

void TestScrollSkin::sharing()
{
    std::shared_ptr<ScrollSkin> skin = ScrollSkin::forRatio(1.5);
    QCOMPARE(skin->ratio(), 1.5);
    QCOMPARE(ScrollSkin::forRatio(1.5), skin);
    QVERIFY(ScrollSkin::forRatio(2) != skin);
    skin->picture(SkinRole::vspace);
    const std::weak_ptr<ScrollSkin> watched = skin;
    skin.reset();
    QVERIFY(watched.expired());
    QCOMPARE(ScrollSkin::forRatio(1.5)->drawnPictures(), 0);
}

void TestScrollSkin::drawnOnce()
{
    ScrollSkin skin(2);
    QCOMPARE(skin.drawnPictures(), 0);
    const qint64 key = skin.picture(SkinRole::vsepbg).cacheKey();
    QCOMPARE(skin.drawnPictures(), 1);
    QCOMPARE(skin.picture(SkinRole::vsepbg).cacheKey(), key);
    QCOMPARE(skin.drawnPictures(), 1);
    QVERIFY(skin.picture(SkinRole::vsepbg, SkinState::Hovered).cacheKey() != key);
    QCOMPARE(skin.drawnPictures(), 2);
}

void TestScrollSkin::composedTrack_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("length");
    for (const double ratio : ratios) {
        for (const int offset : {0, 1, 7}) {
            for (const int length : {36, 133, 250})
                QTest::addRow("%d long at %d, %g", length, offset, ratio) << ratio << offset << length;
        }
    }
}

void TestScrollSkin::composedTrack()
{
    QFETCH(double, ratio);
    QFETCH(int, offset);
    QFETCH(int, length);
    ScrollSkin skin(ratio);
    const QImage track = surface(offset, length, ratio, [&](QPainter& painter) {
        paintTrack(painter, skin, Qt::Vertical, length, SkinState::Hovered, SkinState::Pressed);
    });
    QImage expected(track.size(), track.format());
    {
        const QImage space = pixels(SkinRole::vspace, ratio);
        const QImage farArrow = pixels(SkinRole::varrowbottom, ratio, SkinState::Pressed);
        QPainter painter(&expected);
        for (int y = 0; y < expected.height(); y += space.height())
            painter.drawImage(0, y, space);
        painter.drawImage(0, 0, pixels(SkinRole::varrowtop, ratio, SkinState::Hovered));
        painter.drawImage(0, expected.height() - farArrow.height(), farArrow);
    }
    QCOMPARE(track, expected);
}

void TestScrollSkin::composedLyingTrack()
{
    QFETCH(double, ratio);
    QFETCH(int, offset);
    QFETCH(int, length);
    ScrollSkin skin(ratio);
    const QImage track = surface(
        offset, length, ratio,
        [&](QPainter& painter) {
            paintTrack(painter, skin, Qt::Horizontal, length, SkinState::Hovered, SkinState::Pressed);
        },
        Qt::Horizontal);
    QImage expected(track.size(), track.format());
    {
        const QImage space = pixels(SkinRole::hspace, ratio);
        const QImage farArrow = pixels(SkinRole::harrowright, ratio, SkinState::Pressed);
        QPainter painter(&expected);
        for (int x = 0; x < expected.width(); x += space.width())
            painter.drawImage(x, 0, space);
        painter.drawImage(0, 0, pixels(SkinRole::harrowleft, ratio, SkinState::Hovered));
        painter.drawImage(expected.width() - farArrow.width(), 0, farArrow);
    }
    QCOMPARE(track, expected);
}

void TestScrollSkin::composedThumb_data()
{
    QTest::addColumn<double>("ratio");
    QTest::addColumn<int>("offset");
    QTest::addColumn<int>("length");
    for (const double ratio : ratios) {
        for (const int offset : {0, 1, 2, 3}) {
            for (const int length : {14, 15, 40, 134})
                QTest::addRow("%d long at %d, %g", length, offset, ratio) << ratio << offset << length;
        }
    }
}

void TestScrollSkin::composedThumb()
{
    QFETCH(double, ratio);
    QFETCH(int, offset);
    QFETCH(int, length);
    ScrollSkin skin(ratio);
    for (const SkinState state : states) {
        const QImage thumb = surface(offset, length, ratio, [&](QPainter& painter) {
            paintThumb(painter, skin, Qt::Vertical, length, state);
        });
        QImage expected(thumb.size(), thumb.format());
        {
            const QImage fill = pixels(SkinRole::vsepbg, ratio, state);
            const QImage bottom = pixels(SkinRole::vsepbottom, ratio, state);
            const QImage grip = pixels(SkinRole::vsepmid, ratio, state);
            QPainter painter(&expected);
            for (int y = 0; y < expected.height(); y += fill.height())
                painter.drawImage(0, y, fill);
            painter.drawImage(0, 0, pixels(SkinRole::vseptop, ratio, state));
            painter.drawImage(0, expected.height() - bottom.height(), bottom);
            painter.drawImage(0, expected.height() / 2 - grip.height() / 2, grip);
        }
        QCOMPARE(thumb, expected);
    }
}

void TestScrollSkin::composedLying()
{
    QFETCH(double, ratio);
    constexpr int length = 40;
    ScrollSkin skin(ratio);
    const auto painted = [&](Qt::Orientation orientation) {
        const QSize size(qRound(18 * ratio), qRound(length * ratio));
        QImage image(orientation == Qt::Vertical ? size : size.transposed(),
                     QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        paintThumb(painter, skin, orientation, length, SkinState::Normal);
        painter.end();
        image.setDevicePixelRatio(1);
        return image;
    };
    QCOMPARE(painted(Qt::Horizontal), lyingDown(painted(Qt::Vertical)));
}

void TestScrollSkin::painterIsLeftAsItWas_data()
{
    QTest::addColumn<Qt::Orientation>("orientation");
    QTest::addColumn<SkinRole>("space");
    QTest::addColumn<SkinRole>("fill");
    QTest::newRow("upright") << Qt::Vertical << SkinRole::vspace << SkinRole::vsepbg;
    QTest::newRow("lying") << Qt::Horizontal << SkinRole::hspace << SkinRole::hsepbg;
}

void TestScrollSkin::painterIsLeftAsItWas()
{
    QFETCH(Qt::Orientation, orientation);
    QFETCH(SkinRole, space);
    QFETCH(SkinRole, fill);
    constexpr int length = 80;
    const bool upright = orientation == Qt::Vertical;
    QImage image(200, 200, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(3, 4);
    const QTransform before = painter.transform();
    const auto pixelAt = [&](int along, int across) { // of the surface, in device pixels
        return image.pixel(QPoint(6, 8) + (upright ? QPoint(across, along) : QPoint(along, across)));
    };
    const auto pixelOf = [upright](SkinRole role, int across) {
        return pixels(role, 2).pixel(upright ? QPoint(across, 0) : QPoint(0, across));
    };
    QCOMPARE(paintRatio(painter), 2.0);
    ScrollSkin skin(2);
    paintTrack(painter, skin, orientation, length, SkinState::Normal, SkinState::Normal);
    QCOMPARE(painter.transform(), before);
    for (const int across : {0, 7, 18, 35})
        QCOMPARE(pixelAt(60, across), pixelOf(space, across));
    paintThumb(painter, skin, orientation, length, SkinState::Normal);
    QCOMPARE(painter.transform(), before);
    for (const int across : {0, 7, 18, 35})
        QCOMPARE(pixelAt(60, across), pixelOf(fill, across));
}

QTEST_MAIN(TestScrollSkin)
#include "tst_scrollskin.moc"

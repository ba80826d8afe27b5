#include "engine/codecs/wpg/WpgDrawing1.h"

#include "engine/codecs/wpg/WpgBitmap.h"
#include "engine/codecs/wpg/WpgPalette.h"

#include <algorithm>
#include <array>

namespace quorvia::engine {

namespace {

constexpr double unitsPerInch = 1200;

/// Lines of the styles 2 to 15 in 1/850 inch, drawn and left out by turns.
QList<double> dashesOf(int style)
{
    static const std::array<QList<double>, 14> table = {{{20, 5},
                                                         {4, 4},
                                                         {12, 5, 4, 5},
                                                         {12, 12},
                                                         {9, 4, 2, 4, 2, 4},
                                                         {7, 7},
                                                         {12, 4, 5, 4},
                                                         {22, 4},
                                                         {2, 2},
                                                         {2, 4},
                                                         {6, 6},
                                                         {13, 4, 5, 4},
                                                         {16, 4, 2, 4},
                                                         {13, 3, 3, 3}}};
    constexpr double dotsPerInch = 850;
    QList<double> dashes;
    if (style >= 2 && style - 2 < int(table.size())) {
        for (const double length : table[size_t(style - 2)])
            dashes.append(length / dotsPerInch);
    }
    return dashes;
}

class Player
{
  public:
    Player(const WpgFile& file, const ByteSource& source, WpgCanvas& canvas)
        : m_file(file), m_source(source), m_canvas(canvas), m_height(wpg1Extent(file, source).height())
    {
    }

    void play()
    {
        for (size_t i = 0; i < m_file.records.size() && !m_canvas.stopped(); ++i)
            playRecord(i);
    }

  private:
    void playRecord(size_t index);
    void readFill(WpgNumbers& in);
    void readLine(WpgNumbers& in);
    void readTextAttributes(WpgNumbers& in);
    void drawLine(WpgNumbers& in);
    void drawPoints(WpgNumbers& in, bool closed);
    void drawRectangle(WpgNumbers& in);
    void drawEllipse(WpgNumbers& in);
    void drawCurve(WpgNumbers& in);
    void drawText(WpgNumbers& in);
    void drawBitmap(size_t index);

    QPointF point(WpgNumbers& in) const
    {
        const double x = in.i16() / unitsPerInch;
        return QPointF(x, m_height - in.i16() / unitsPerInch);
    }
    void stroke(const QPainterPath& path)
    {
        WpgStyle style = m_style;
        style.fill = Qt::NoBrush;
        m_canvas.drawPath(path, style);
    }
    /// How many points of a list that tells `told` are there.
    static int pointsIn(const WpgNumbers& in, int told)
    {
        return int(std::min<qsizetype>(told, in.left() / 4));
    }

    const WpgFile& m_file;
    const ByteSource& m_source;
    WpgCanvas& m_canvas;
    double m_height; ///< inches: y is counted from the lower edge
    WpgPalette m_palette;
    WpgStyle m_style;
    double m_textSize = 200 / unitsPerInch;
    int m_textAlignment = 0;
    double m_textAngle = 0;
    QColor m_textColor = Qt::black;
};

void Player::playRecord(size_t index)
{
    const WpgRecord& record = m_file.records[index];
    if (m_file.isColorMap(record)) {
        m_palette.read(m_file, record, m_source);
        return;
    }
    if (m_file.isBitmap(record)) {
        drawBitmap(index);
        return;
    }
    constexpr qint64 longest = 8 + 65535 * 4; // the longest list of points
    WpgNumbers in(m_source.bytes(record.offset, std::min(record.length, longest)));
    switch (record.type) {
    case wpg1::fillAttributes:
        return readFill(in);
    case wpg1::lineAttributes:
        return readLine(in);
    case wpg1::textAttributes:
        return readTextAttributes(in);
    case wpg1::line:
        return drawLine(in);
    case wpg1::polyline:
        return drawPoints(in, false);
    case wpg1::polygon:
        return drawPoints(in, true);
    case wpg1::rectangle:
        return drawRectangle(in);
    case wpg1::ellipse:
        return drawEllipse(in);
    case wpg1::curve:
        return drawCurve(in);
    case wpg1::text:
        return drawText(in);
    default:
        return;
    }
}

void Player::readFill(WpgNumbers& in)
{
    constexpr int hollow = 0;
    constexpr int solid = 1;
    const int style = in.u8();
    QColor color(m_palette.color(in.u8()));
    if (style != solid) // hatches and dots: a half tone of the colour stands for them
        color.setAlpha(128);
    m_style.fill = style == hollow ? QBrush(Qt::NoBrush) : QBrush(color);
}

void Player::readLine(WpgNumbers& in)
{
    const int style = in.u8();
    m_style.line = QColor(m_palette.color(in.u8()));
    const int width = in.u16();
    m_style.stroked = style != 0 && width != 0;
    m_style.lineWidth = width / unitsPerInch;
    m_style.dashes = dashesOf(style);
}

void Player::readTextAttributes(WpgNumbers& in)
{
    in.skip(2); // a letter's width
    const int height = in.u16();
    if (height > 0)
        m_textSize = height / unitsPerInch;
    in.skip(13); // the font
    m_textAlignment = std::min(in.u8(), 2);
    in.skip(1); // vertical alignment
    m_textColor = QColor(m_palette.color(in.u8()));
    m_textAngle = in.i16();
}

void Player::drawLine(WpgNumbers& in)
{
    QPainterPath path(point(in));
    path.lineTo(point(in));
    stroke(path);
}

void Player::drawPoints(WpgNumbers& in, bool closed)
{
    const int count = pointsIn(in, in.u16());
    if (count < 2)
        return;
    QPainterPath path(point(in));
    for (int i = 1; i < count; ++i)
        path.lineTo(point(in));
    if (!closed)
        return stroke(path);
    path.closeSubpath();
    m_canvas.drawPath(path, m_style);
}

void Player::drawRectangle(WpgNumbers& in)
{
    const QPointF lowerLeft = point(in);
    const double width = in.i16() / unitsPerInch;
    const double height = in.i16() / unitsPerInch;
    QPainterPath path;
    path.addRect(QRectF(lowerLeft.x(), lowerLeft.y() - height, width, height).normalized());
    m_canvas.drawPath(path, m_style);
}

void Player::drawEllipse(WpgNumbers& in)
{
    const QPointF center = point(in);
    const double radiusX = std::abs(in.i16()) / unitsPerInch;
    const double radiusY = std::abs(in.i16()) / unitsPerInch;
    const double turn = in.i16();
    const int first = in.i16();
    const int last = in.i16();
    const int flags = in.u16();
    constexpr int joinCenter = 1;
    constexpr int joinEnds = 2;
    const QRectF around(-radiusX, -radiusY, 2 * radiusX, 2 * radiusY);
    const int sweep = ((last - first) % 360 + 360) % 360;
    QPainterPath path;
    if (sweep == 0) {
        path.addEllipse(around);
    } else if (flags & joinCenter) {
        path.arcTo(around, first, sweep); // begins in the centre
        path.closeSubpath();
    } else {
        path.arcMoveTo(around, first);
        path.arcTo(around, first, sweep);
        if (flags & joinEnds)
            path.closeSubpath();
    }
    path = QTransform().translate(center.x(), center.y()).rotate(-turn).map(path);
    const bool open = sweep != 0 && (flags & (joinCenter | joinEnds)) == 0;
    if (open)
        stroke(path);
    else
        m_canvas.drawPath(path, m_style);
}

void Player::drawCurve(WpgNumbers& in)
{
    in.skip(4); // the length of records that draw the same for older programs
    const int count = pointsIn(in, in.u16());
    if (count < 4)
        return;
    QPainterPath path(point(in));
    const QPointF first = path.currentPosition();
    for (int i = 1; i + 2 < count; i += 3) {
        const QPointF one = point(in);
        const QPointF other = point(in);
        path.cubicTo(one, other, point(in));
    }
    if (path.currentPosition() == first)
        m_canvas.drawPath(path, m_style);
    else
        stroke(path);
}

void Player::drawText(WpgNumbers& in)
{
    const int length = in.u16();
    const QPointF start = point(in);
    const QString text = QString::fromLatin1(in.rest().left(length));
    m_canvas.drawText(start, text, QFont(QStringLiteral("DejaVu Sans")), m_textSize, m_textColor,
                      m_textAlignment, m_textAngle);
}

void Player::drawBitmap(size_t index)
{
    const Result<WpgBitmap> bitmap = readWpgBitmap(m_source, m_file, index);
    if (!bitmap || !m_canvas.afford(double(bitmap->stored.width()) * bitmap->stored.height()))
        return;
    const Result<Picture> picture = decodeWpgBitmap(m_source, *bitmap, m_palette, m_canvas.cancel());
    if (!picture)
        return;
    QRectF place(0, 0, double(bitmap->stored.width()) / bitmap->dotsPerInch.width(),
                 double(bitmap->stored.height()) / bitmap->dotsPerInch.height());
    if (!bitmap->place.isEmpty()) {
        const QRect& units = bitmap->place; // its y counts from the lower edge to the bitmap's
        place = QRectF(units.x() / unitsPerInch, m_height - (units.y() + units.height()) / unitsPerInch,
                       units.width() / unitsPerInch, units.height() / unitsPerInch);
    }
    m_canvas.drawImage(picture->image, place);
}

} // namespace

QSizeF wpg1Extent(const WpgFile& file, const ByteSource& source)
{
    const auto start = std::find_if(file.records.begin(), file.records.end(),
                                    [](const WpgRecord& record) { return record.type == wpg1::start; });
    if (start == file.records.end())
        return {};
    WpgNumbers in(source.bytes(start->offset, 6));
    in.skip(2); // version and flags
    const double width = in.u16() / unitsPerInch;
    return QSizeF(width, in.u16() / unitsPerInch);
}

void playWpg1(const WpgFile& file, const ByteSource& source, WpgCanvas& canvas)
{
    Player(file, source, canvas).play();
}

} // namespace quorvia::engine

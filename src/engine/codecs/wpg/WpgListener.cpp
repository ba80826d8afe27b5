#include "engine/codecs/wpg/WpgListener.h"

#include "engine/codecs/Codecs.h"
#include "engine/codecs/wpg/WpgArc.h"

#include <QLinearGradient>

#include <algorithm>
#include <array>
#include <cmath>

namespace quorvia::engine {

namespace {

using Properties = librevenge::RVNGPropertyList;

double number(const Properties& properties, const char* name, double otherwise = 0)
{
    const librevenge::RVNGProperty* property = properties[name];
    const double value = property ? property->getDouble() : otherwise;
    return std::isfinite(value) ? value : otherwise;
}

QString text(const Properties& properties, const char* name)
{
    const librevenge::RVNGProperty* property = properties[name];
    return property ? QString::fromUtf8(property->getStr().cstr()) : QString();
}

QColor color(const Properties& properties, const char* name, const char* opacity)
{
    QColor result(text(properties, name));
    if (!result.isValid())
        result = Qt::black;
    result.setAlphaF(float(std::clamp(number(properties, opacity, 1), 0.0, 1.0)));
    return result;
}

QPointF pointOf(const Properties& properties, const char* x = "svg:x", const char* y = "svg:y")
{
    return QPointF(number(properties, x), number(properties, y));
}

QRectF rectOf(const Properties& properties)
{
    return QRectF(pointOf(properties),
                  QSizeF(number(properties, "svg:width"), number(properties, "svg:height")));
}

/// A gradient from the upper to the lower edge of the shape, turned about its centre.
QBrush gradientBrush(const Properties& properties)
{
    const librevenge::RVNGPropertyListVector* stops = properties.child("svg:linearGradient");
    if (!stops || stops->count() == 0)
        return color(properties, "draw:fill-color", "draw:opacity");
    const double angle = -number(properties, "draw:angle") * M_PI / 180;
    const QPointF center(0.5, 0.5);
    const QPointF half(-std::sin(angle) / 2, std::cos(angle) / 2);
    QLinearGradient gradient(center - half, center + half);
    gradient.setCoordinateMode(QGradient::ObjectMode);
    constexpr unsigned long mostStops = 64;
    for (unsigned long i = 0; i < std::min<unsigned long>(stops->count(), mostStops); ++i)
        gradient.setColorAt(std::clamp(number((*stops)[i], "svg:offset"), 0.0, 1.0),
                            color((*stops)[i], "svg:stop-color", "svg:stop-opacity"));
    return gradient;
}

QBrush brushOf(const Properties& properties)
{
    const QString fill = text(properties, "draw:fill");
    if (fill == QLatin1String("none"))
        return Qt::NoBrush;
    if (fill == QLatin1String("gradient"))
        return gradientBrush(properties);
    return color(properties, "draw:fill-color", "draw:opacity");
}

QList<double> dashesOf(const Properties& properties)
{
    constexpr double pointsPerInch = 72;
    constexpr double mostDots = 16;
    const double gap = number(properties, "draw:distance") / pointsPerInch;
    QList<double> dashes;
    const auto add = [&](const char* count, const char* length) {
        for (int i = 0; i < std::min(number(properties, count), mostDots); ++i)
            dashes << number(properties, length) / pointsPerInch << gap;
    };
    add("draw:dots1", "draw:dots1-length");
    add("draw:dots2", "draw:dots2-length");
    return dashes;
}

QPainterPath pointsPath(const Properties& properties)
{
    QPainterPath path;
    const librevenge::RVNGPropertyListVector* points = properties.child("svg:points");
    for (unsigned long i = 0; points && i < points->count(); ++i) {
        const QPointF point = pointOf((*points)[i]);
        if (i == 0)
            path.moveTo(point);
        else
            path.lineTo(point);
    }
    return path;
}

void addElement(QPainterPath& path, const Properties& element)
{
    const QString action = text(element, "librevenge:path-action");
    const QPointF end = pointOf(element);
    switch (action.isEmpty() ? '\0' : action[0].toLatin1()) {
    case 'M':
        path.moveTo(end);
        break;
    case 'L':
        path.lineTo(end);
        break;
    case 'C':
        path.cubicTo(pointOf(element, "svg:x1", "svg:y1"), pointOf(element, "svg:x2", "svg:y2"), end);
        break;
    case 'A':
        addSvgArc(path, {number(element, "svg:rx"), number(element, "svg:ry")},
                  number(element, "librevenge:rotate"), number(element, "librevenge:large-arc", 1) != 0,
                  number(element, "librevenge:sweep", 1) != 0, end);
        break;
    case 'Z':
        path.closeSubpath();
        break;
    default:
        break;
    }
}

/// The picture in a file inside the file; a graphic in a graphic is left out.
QImage embeddedPicture(const QByteArray& bytes, WpgCanvas& canvas)
{
    const std::array<const Codec*, 5> codecs = {&pngCodec(), &jpegCodec(), &gifCodec(), &tiffCodec(),
                                                &bmpCodec()};
    for (const Codec* codec : codecs) {
        if (!codec->sniff(bytes.left(1024), {}))
            continue;
        auto decoder = codec->open(ByteSource::fromBytes(bytes));
        if (!decoder)
            return {};
        const auto header = (*decoder)->header(1);
        if (!header || !canvas.afford(4.0 * header->size.width() * header->size.height()))
            return {};
        const auto picture = (*decoder)->decode(1, {}, canvas.cancel());
        return picture ? picture->image : QImage();
    }
    return {};
}

} // namespace

void WpgListener::setStyle(const Properties& properties)
{
    const QString stroke = text(properties, "draw:stroke");
    m_style.stroked = stroke != QLatin1String("none");
    m_style.line = color(properties, "svg:stroke-color", "svg:stroke-opacity");
    m_style.lineWidth = number(properties, "svg:stroke-width");
    m_style.dashes = stroke == QLatin1String("dash") ? dashesOf(properties) : QList<double>();
    m_style.fill = brushOf(properties);
    m_fillRule =
        text(properties, "svg:fill-rule") == QLatin1String("nonzero") ? Qt::WindingFill : Qt::OddEvenFill;
}

void WpgListener::drawRectangle(const Properties& properties)
{
    QPainterPath path;
    path.addRoundedRect(rectOf(properties), number(properties, "svg:rx"), number(properties, "svg:ry"));
    m_canvas.drawPath(path, m_style);
}

void WpgListener::drawEllipse(const Properties& properties)
{
    const QPointF center = pointOf(properties, "svg:cx", "svg:cy");
    QPainterPath path;
    path.addEllipse(QPointF(), number(properties, "svg:rx"), number(properties, "svg:ry"));
    const double turn = number(properties, "librevenge:rotate");
    m_canvas.drawPath(QTransform().translate(center.x(), center.y()).rotate(-turn).map(path), m_style);
}

void WpgListener::drawPolygon(const Properties& properties)
{
    QPainterPath path = pointsPath(properties);
    path.closeSubpath();
    path.setFillRule(m_fillRule);
    m_canvas.drawPath(path, m_style);
}

void WpgListener::drawPolyline(const Properties& properties)
{
    WpgStyle style = m_style;
    style.fill = Qt::NoBrush;
    m_canvas.drawPath(pointsPath(properties), style);
}

void WpgListener::drawPath(const Properties& properties)
{
    QPainterPath path;
    const librevenge::RVNGPropertyListVector* elements = properties.child("svg:d");
    for (unsigned long i = 0; elements && i < elements->count(); ++i)
        addElement(path, (*elements)[i]);
    path.setFillRule(m_fillRule);
    m_canvas.drawPath(path, m_style);
}

void WpgListener::drawGraphicObject(const Properties& properties)
{
    const librevenge::RVNGProperty* data = properties["office:binary-data"];
    if (!data || m_canvas.stopped())
        return;
    const QByteArray bytes = QByteArray::fromBase64(data->getStr().cstr());
    const QImage picture = embeddedPicture(bytes, m_canvas);
    // One pixel is the mark of a bitmap that we decode ourselves.
    const bool isMark = picture.size() == QSize(1, 1);
    m_canvas.drawImage(isMark ? m_bitmapOf(int(picture.pixel(0, 0) & 0xFFFFFF)) : picture,
                       rectOf(properties));
}

void WpgListener::startTextObject(const Properties& properties)
{
    m_textAt = pointOf(properties);
    m_text.clear();
}

void WpgListener::openSpan(const Properties& properties)
{
    constexpr double pointsPerInch = 72;
    m_textSize = std::max(number(properties, "fo:font-size", 12), 1.0) / pointsPerInch;
    m_textColor = color(properties, "fo:color", "fo:opacity");
    m_font = QFont(text(properties, "style:font-name"));
    m_font.setStyleHint(QFont::SansSerif);
    m_font.setBold(text(properties, "fo:font-weight") == QLatin1String("bold"));
    m_font.setItalic(text(properties, "fo:font-style") == QLatin1String("italic"));
}

void WpgListener::insertText(const librevenge::RVNGString& inserted)
{
    constexpr qsizetype longest = 4096;
    if (m_text.size() < longest)
        m_text += QString::fromUtf8(inserted.cstr());
}

void WpgListener::finishLine()
{
    constexpr double lineSpacing = 1.2;
    if (m_text.isEmpty())
        return;
    m_canvas.drawText(m_textAt, m_text, m_font, m_textSize, m_textColor);
    m_textAt.ry() += m_textSize * lineSpacing;
    m_text.clear();
}

} // namespace quorvia::engine

#include "platform/ToolLook.h"

#include "platform/ToolModel.h"

#include <QPalette>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace quorvia::platform {

namespace {

/// The relative luminance of WCAG 2, 0 to 1.
double luminance(const QColor& color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

QColor veil(QColor ink, double opacity)
{
    ink.setAlphaF(float(opacity));
    return ink;
}

QColor inkOn(const QColor& ground, const QColor& own)
{
    constexpr double wellReadable = 7;
    if (contrast(ground, own) >= wellReadable)
        return own;
    const QColor nearBlack(24, 28, 32);
    return contrast(ground, Qt::white) >= contrast(ground, nearBlack) ? QColor(Qt::white) : nearBlack;
}

} // namespace

double contrast(const QColor& one, const QColor& other)
{
    const double a = luminance(one);
    const double b = luminance(other);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

ToolLook toolLook(const QPalette& palette)
{
    const QColor ink = inkOn(palette.color(QPalette::Active, QPalette::Window),
                             palette.color(QPalette::Active, QPalette::WindowText));
    return {ink,
            veil(ink, 0.45),
            veil(ink, 0.14),
            veil(ink, 0.26),
            veil(ink, 0.16),
            veil(ink, 0.24),
            veil(ink, 0.6),
            veil(ink, 0.3)};
}

QString plainCaption(const QString& caption)
{
    QString plain;
    plain.reserve(caption.size());
    for (qsizetype at = 0; at < caption.size(); ++at) {
        if (caption.at(at) == QLatin1Char('&') && ++at == caption.size())
            break;
        plain.append(caption.at(at));
    }
    return plain;
}

QString plainCaption(const ToolValues& values)
{
    return values.literalCaption ? values.caption : plainCaption(values.caption);
}

QString markedCaption(const ToolValues& values)
{
    QString caption = values.caption;
    return values.literalCaption ? caption.replace(QLatin1Char('&'), QLatin1String("&&")) : caption;
}

QString tipOf(const ToolValues& values)
{
    const bool ownTip = !values.toolTip.isEmpty() && values.toolTip != values.caption;
    const QString text = ownTip ? values.toolTip : plainCaption(values);
    return Qt::mightBeRichText(text) ? Qt::convertFromPlainText(text) : text;
}

} // namespace quorvia::platform

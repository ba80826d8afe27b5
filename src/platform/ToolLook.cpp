#include "platform/ToolLook.h"

#include "platform/Contrast.h"
#include "platform/ToolModel.h"

#include <QPalette>
#include <QTextDocument>

namespace quorvia::platform {

namespace {

QColor veil(QColor ink, double opacity)
{
    ink.setAlphaF(float(opacity));
    return ink;
}

} // namespace

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

#include "controls/TabPainter.h"

#include "app/Colors.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPainter>
#include <QPalette>

#include <cmath>

namespace quorvia::controls {

namespace {

/// One ring just inside `box`: lit from the upper left when raised, from the lower right when sunken.
void paintRing(QPainter& painter, const QRect& box, EdgeRing ring, const QColor& base)
{
    constexpr double lightPart = 0.3;
    constexpr double shadePart = 0.25;
    const QColor light = mixed(base, Qt::white, lightPart);
    const QColor shade = mixed(base, Qt::black, shadePart);
    const QColor& nearSides = ring == EdgeRing::Raised ? light : shade;
    const QColor& farSides = ring == EdgeRing::Raised ? shade : light;
    painter.fillRect(box.left(), box.top(), box.width(), 1, nearSides);
    painter.fillRect(box.left(), box.top(), 1, box.height(), nearSides);
    painter.fillRect(box.left(), box.bottom(), box.width(), 1, farSides);
    painter.fillRect(box.right(), box.top(), 1, box.height(), farSides);
}

void paintEdge(QPainter& painter, QRect box, int borderType, const QColor& base)
{
    for (const EdgeRing ring : edgeRings(borderType)) {
        if (box.width() < 2 || box.height() < 2)
            return;
        paintRing(painter, box, ring, base);
        box.adjust(1, 1, -1, -1);
    }
}

void paintFocus(QPainter& painter, const TabRecord& tab, int height, QColor color)
{
    constexpr double strength = 0.7;
    constexpr double radius = 3;
    color.setAlphaF(strength);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(color);
    // Half a pixel in: the line then covers whole pixels. It stands in the gaps beside the tab.
    painter.drawRoundedRect(QRectF(tab.Left - 2, 1, tab.Width + 4, height - 2).adjusted(0.5, 0.5, -0.5, -0.5),
                            radius, radius);
    painter.restore();
}

void paintTab(QPainter& painter, const TabRecord& tab, const TabPaint& paint)
{
    const TabLook look = tabLook(tab, paint.properties, paint.height);
    const QColor fillColor = app::propertyColor(look.fillColor, paint.palette);
    const QColor textColor = app::propertyColor(look.textColor, paint.palette);
    if (!look.fill.isEmpty())
        painter.fillRect(look.fill, fillColor);
    if (!look.edge.isEmpty())
        paintEdge(painter, look.edge, paint.properties.TabBorderType, fillColor);

    QFont font = paint.font;
    font.setBold(font.bold() || look.bold);
    font.setUnderline(font.underline() || look.underlined);
    painter.setFont(font);
    painter.setPen(textColor);
    painter.drawText(look.text, Qt::AlignCenter | Qt::TextSingleLine, tab.Caption);
    if (tab.Selected && paint.showFocus)
        paintFocus(painter, tab, paint.height, textColor);
}

} // namespace

QColor mixed(const QColor& color, const QColor& other, double part)
{
    const auto mix = [part](int a, int b) { return static_cast<int>(std::lround(a + (b - a) * part)); };
    return {mix(color.red(), other.red()), mix(color.green(), other.green()),
            mix(color.blue(), other.blue())};
}

int captionWidth(const QString& caption, const QFont& font)
{
    QFont bold = font;
    bold.setBold(true);
    return static_cast<int>(std::ceil(QFontMetricsF(bold).size(Qt::TextSingleLine, caption).width()));
}

void paintTabs(QPainter& painter, const TabList& tabs, const TabPaint& paint)
{
    const QColor lineColor = app::propertyColor(paint.properties.SeperatorLineColor, paint.palette);
    for (int index = tabs.count(); index >= 1; --index) {
        const TabRecord& tab = tabs.at(index);
        if (tab.Selected)
            continue;
        paintTab(painter, tab, paint);
        if (hasSeparator(index, tabs.selected()))
            painter.fillRect(separatorLine({tab.Left, tab.Width}, paint.height), lineColor);
    }
    if (tabs.selected() != 0)
        paintTab(painter, tabs.at(tabs.selected()), paint);
}

} // namespace quorvia::controls

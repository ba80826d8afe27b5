#include "output/PreviewLayout.h"

#include "output/PageLayout.h"

#include <algorithm>
#include <cmath>

namespace quorvia::output {

namespace {

constexpr int narrowMargin = 100;
constexpr int margin = 200;
constexpr int scrollUnit = 100; // twips a value

} // namespace

QStringList zoomTexts()
{
    return {QStringLiteral("10%"),  QStringLiteral("25%"),  QStringLiteral("50%"), QStringLiteral("75%"),
            QStringLiteral("100%"), QStringLiteral("200%"), QStringLiteral("300%")};
}

double zoomOf(const QString& text)
{
    return text.section(QLatin1Char('%'), 0, 0).toInt() / 100.0;
}

QSize previewSize(QSize page, double zoom)
{
    return {qRound(page.width() * zoom), qRound(page.height() * zoom)};
}

int previewOffset(int value)
{
    return paperMargin - value * scrollUnit;
}

PreviewAxis previewAxis(int preview, int frame, BarBefore before, int start)
{
    PreviewAxis axis;
    if (frame >= preview) {
        axis.place = frame / 2 - preview / 2;
        return axis;
    }
    axis.hasBar = true;
    axis.maximum = int(std::nearbyint((preview - frame + 2.0 * paperMargin) / scrollUnit));
    axis.value = std::clamp(before.shown ? before.value : start, 0, axis.maximum);
    axis.place = previewOffset(axis.value);
    return axis;
}

QRectF drawnRect(QPoint anchor, QPointF pointer)
{
    return QRectF(anchor, pointer).normalized();
}

bool isClick(const QRectF& drawn)
{
    constexpr double least = 150;
    return drawn.width() < least || drawn.height() < least;
}

QRectF withBoxSize(const QRectF& drawn, const PageBoxes& boxes, QSizeF twipsPerPixel, double zoom)
{
    return {drawn.topLeft(), boxesRect(boxes).size() * twipsPerPixel.width() * zoom};
}

PageBoxes boxesOf(const QRectF& drawn, QSizeF twipsPerPixel, double zoom)
{
    const auto across = [&](double twips) {
        return plainDecimal(twips / twipsPerPixel.width() * (1 / zoom));
    };
    const auto down = [&](double twips) { return plainDecimal(twips / twipsPerPixel.height() * (1 / zoom)); };
    return {across(drawn.x()), down(drawn.y()), across(drawn.width()), down(drawn.height())};
}

PrintWindowLayout printWindowLayout(QSize window, QSize options, int row)
{
    const int rowTop = window.height() - margin - row;
    const int bottom = rowTop - margin;
    const int left = narrowMargin + options.width() + margin;
    return {
        .options = {narrowMargin, narrowMargin, options.width(),
                    std::max(bottom - narrowMargin, options.height())},
        .frame = {left, margin, std::max(window.width() - margin - left, 0), std::max(bottom - margin, 0)},
        .buttons = {margin, rowTop, std::max(window.width() - 2 * margin, 0), row}};
}

QSize smallestPrintWindow(QSize options, int row)
{
    constexpr int smallestFrame = 3000;
    return {narrowMargin + options.width() + margin + smallestFrame + margin,
            narrowMargin + options.height() + margin + row + margin};
}

CopiesAnswer typedCopies(const QString& text)
{
    constexpr int most = 9999;
    const QString trimmed = text.trimmed();
    bool isWhole = false;
    const int copies = trimmed.toInt(&isWhole);
    if (isWhole && copies >= 1 && copies <= most)
        return {copies, true};
    bool isNumber = false;
    trimmed.toDouble(&isNumber);
    return {{}, isNumber};
}

QString printerText(const QString& device, int copies)
{
    return QStringLiteral("  %1   Copies: ").arg(device) + QString::number(copies);
}

} // namespace quorvia::output

#include "collections/CellComposer.h"

#include "app/Twips.h"
#include "collections/CellFit.h"
#include "engine/Transforms.h"

#include <QPainter>

#include <algorithm>

namespace quorvia::collections {

namespace {

QSize canvasPixels(double ratio)
{
    return (workingCanvas(app::twipsPerPixel) * (ratio / app::twipsPerPixel)).toSize();
}

/// `area` of the canvas as whole pixels of a cell of `size`.
QRect inCell(const QRectF& area, QSizeF canvas, QSize size)
{
    const double across = size.width() / canvas.width();
    const double down = size.height() / canvas.height();
    const QPoint near(qRound(area.left() * across), qRound(area.top() * down));
    const QPoint far(qRound(area.right() * across), qRound(area.bottom() * down));
    return {near, QSize(std::max(far.x() - near.x(), 1), std::max(far.y() - near.y(), 1))};
}

} // namespace

engine::SmallPicture cellPicture(const QString& path, const QString& saveTo, double ratio)
{
    const auto sizeFor = [ratio](QSize page) { return fitCell(page, app::twipsPerPixel, ratio).pixels; };
    return {path, canvasPixels(ratio), sizeFor, saveTo};
}

QImage composeCell(const engine::SmallImage& picture, const QColor& color, QSize size, double ratio)
{
    QImage cell(size.boundedTo(canvasPixels(ratio)), QImage::Format_RGB32);
    if (cell.isNull())
        return cell;
    cell.fill(color);
    if (picture.image.isNull())
        return cell;
    const CellFit fit = fitCell(picture.page, app::twipsPerPixel, ratio);
    const QRect place = inCell(fit.picture, fit.canvas, cell.size());
    QPainter painter(&cell);
    painter.drawImage(place.topLeft(), engine::resized(picture.image, place.size()));
    return cell;
}

} // namespace quorvia::collections

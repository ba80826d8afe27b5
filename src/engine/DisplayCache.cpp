#include "engine/DisplayCache.h"

#include "engine/ImagePlacement.h"
#include "engine/Resample.h"

#include <QPainter>
#include <QRegion>

#include <utility>

namespace quorvia::engine {

QImage renderedPart(const QImage& source, const DisplayView& view, QRect part,
                    const ColorConversion* conversion)
{
    const QSize target = view.target.size();
    QImage pixels = resampled(source, target, part.translated(-view.target.topLeft()),
                              displayFilter(source.width(), target.width()),
                              displayFilter(source.height(), target.height()));
    if (conversion) {
        if (pixels.hasAlphaChannel())
            pixels.convertTo(QImage::Format_ARGB32); // a colour is converted as it is, not as a share
        pixels = converted(std::move(pixels), *conversion);
    }
    if (pixels.isNull() || !pixels.hasAlphaChannel())
        return pixels;
    QImage blended(pixels.size(), QImage::Format_RGB32);
    if (blended.isNull())
        return {};
    blended.fill(view.back);
    QPainter(&blended).drawImage(0, 0, pixels);
    return blended;
}

bool DisplayCache::covers(const DisplayView& view, QRect part) const
{
    return !m_pixels.isNull() && m_view == view && m_part.contains(part);
}

bool DisplayCache::fill(const QImage& source, const DisplayView& view, QRect part,
                        const ColorConversion* conversion)
{
    const bool sameView = !m_pixels.isNull() && m_view == view;
    const QRect kept = sameView && m_sourceSize == source.size() ? m_part.intersected(part) : QRect();
    const bool replaced = sameView && m_sourceSize != source.size() && m_part.intersects(part);
    QImage pixels;
    if (kept.isEmpty()) {
        clear(); // before, not after: never two screens at once
        pixels = renderedPart(source, view, part, conversion);
    } else {
        pixels = QImage(part.size(), QImage::Format_RGB32);
        QPainter painter(&pixels);
        painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(kept.topLeft() - part.topLeft(), m_pixels, kept.translated(-m_part.topLeft()));
        for (const QRect& rest : QRegion(part).subtracted(kept))
            painter.drawImage(rest.topLeft() - part.topLeft(), renderedPart(source, view, rest, conversion));
    }
    m_pixels = pixels;
    m_part = pixels.isNull() ? QRect() : part;
    m_view = view;
    m_sourceSize = source.size();
    return replaced;
}

void DisplayCache::clear()
{
    m_pixels = QImage();
    m_part = QRect();
}

} // namespace quorvia::engine

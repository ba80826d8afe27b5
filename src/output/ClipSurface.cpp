#include "output/ClipSurface.h"

#include "engine/DevicePixels.h"
#include "engine/ImagePlacement.h"

#include <QPainter>
#include <QPaintEvent>

namespace quorvia::output {

ClipSurface::ClipSurface(const char* name, QWidget* parent) : QWidget(parent)
{
    setObjectName(QLatin1String(name));
}

void ClipSurface::showPicture(const QImage& picture)
{
    m_picture = picture;
    m_stretched = {};
    m_stretches = false;
    update();
}

void ClipSurface::stretchPicture(const QImage& picture)
{
    if (m_picture.cacheKey() != picture.cacheKey())
        m_stretched = {};
    m_picture = picture;
    m_stretches = true;
    update();
}

const QImage& ClipSurface::stretched(QSize size)
{
    if (m_stretched.size() != size) {
        const QImage source = engine::normalized(m_picture);
        m_stretched = engine::resampled(source, size, QRect(QPoint(), size),
                                        engine::displayFilter(source.width(), size.width()),
                                        engine::displayFilter(source.height(), size.height()));
    }
    return m_stretched;
}

void ClipSurface::paintEvent(QPaintEvent* event)
{
    if (m_picture.isNull())
        return;
    const double ratio = devicePixelRatioF();
    const QSize whole = (QSizeF(size()) * ratio).toSize();
    QPainter painter(this);
    painter.setClipRect(event->rect());
    engine::useDevicePixels(painter, ratio);
    const QImage& shown = m_stretches ? stretched(whole) : m_picture;
    if (shown.hasAlphaChannel())
        painter.fillRect(shown.rect(), Qt::white);
    const QRect part = engine::toDevicePixels(event->rect(), ratio) & shown.rect();
    painter.drawImage(part.topLeft(), shown, part);
}

} // namespace quorvia::output

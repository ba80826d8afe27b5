#include "engine/DevicePixels.h"

#include <QPainter>

#include <cmath>

namespace quorvia::engine {

void useDevicePixels(QPainter& painter, double ratio)
{
    painter.scale(1 / ratio, 1 / ratio);
    const QTransform& device = painter.deviceTransform();
    painter.translate(std::round(device.dx()) - device.dx(), std::round(device.dy()) - device.dy());
}

} // namespace quorvia::engine

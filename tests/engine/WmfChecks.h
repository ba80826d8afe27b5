// What the tests of metafiles look at: single pixels, and the box of all that is drawn.
#pragma once

#include "corpus/WmfMaker.h"

#include <QImage>
#include <QMetaType>
#include <QRect>

namespace quorvia::test {

inline constexpr QRgb red = qRgb(255, 0, 0);
inline constexpr QRgb blue = qRgb(0, 0, 255);
inline constexpr QRgb black = qRgb(0, 0, 0);
inline constexpr QRgb white = qRgb(255, 255, 255);

/// The place of one pixel and what must be there.
struct Probe
{
    int x = 0;
    int y = 0;
    QRgb color = 0;
};
using Probes = QList<Probe>;

inline QString wrongProbe(const QImage& image, const Probes& probes)
{
    for (const Probe& probe : probes) {
        if (!image.valid(probe.x, probe.y) || image.pixel(probe.x, probe.y) != probe.color)
            return QStringLiteral("%1, %2 is %3")
                .arg(probe.x)
                .arg(probe.y)
                .arg(image.pixel(probe.x, probe.y), 8, 16, QLatin1Char('0'));
    }
    return {};
}

/// The smallest box around all pixels of `image` that are not white.
inline QRect inkOf(const QImage& image)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != white)
                ink |= QRect(x, y, 1, 1);
        }
    }
    return ink;
}

/// 100 x 100 pixels, one a unit.
inline WmfMaker big()
{
    return WmfMaker::pixels(QSize(100, 100));
}

} // namespace quorvia::test

Q_DECLARE_METATYPE(quorvia::test::WmfMaker)

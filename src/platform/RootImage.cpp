#include "platform/RootImage.h"

#include "platform/ReadLimit.h"
#include "platform/Reason.h"

#include <QImageReader>
#include <QPainter>

#include <algorithm>

namespace quorvia::platform {

namespace {

/// The rectangle of `size` with its middle in that of `around`.
QRect centred(QSize size, const QRect& around)
{
    const QSize rest = around.size() - size;
    return {around.topLeft() + QPoint(rest.width() / 2, rest.height() / 2), size};
}

void drawOn(QPainter& painter, const QRect& screen, const QImage& picture, WallpaperStyle style)
{
    painter.setClipRect(screen);
    if (style == WallpaperStyle::Centre)
        painter.drawImage(centred(picture.size(), screen).topLeft(), picture);
    else
        painter.drawImage(screen.topLeft(),
                          picture.scaled(screen.size(), Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

} // namespace

QImage rootImage(const QImage& picture, QSize size, const QList<QRect>& screens, WallpaperStyle style)
{
    QImage root(size, QImage::Format_RGB32);
    if (root.isNull() || picture.isNull())
        return {};
    root.fill(Qt::black);
    QImage pixels = picture.convertToFormat(picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied
                                                                      : QImage::Format_RGB32);
    pixels.setDevicePixelRatio(1);
    QPainter painter(&root);
    if (style == WallpaperStyle::Tile) {
        painter.fillRect(root.rect(), QBrush(pixels));
        return root;
    }
    const QList<QRect> places = screens.isEmpty() ? QList<QRect>{QRect(QPoint(0, 0), size)} : screens;
    for (const QRect& screen : places)
        drawOn(painter, screen, pixels, style);
    return root;
}

int rowsPerRequest(qint64 limit, qint64 bytesPerRow)
{
    constexpr qint64 head = 28;       // bytes, of the longer form
    constexpr qint64 handy = 1 << 20; // larger requests would hold up the other programs
    return int(std::max<qint64>(0, (std::min(limit, handy) - head) / bytesPerRow));
}

QImage wallpaperPicture(const QString& path, QString* why)
{
    const ReadLimit anySize(0);
    QImageReader reader(path);
    QImage picture = reader.read();
    if (picture.isNull())
        fail(why, reader.errorString());
    return picture;
}

} // namespace quorvia::platform

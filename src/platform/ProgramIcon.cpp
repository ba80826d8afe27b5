#include "platform/ProgramIcon.h"

#include <QPainter>
#include <QSvgRenderer>

/// The resources of a static library have to be asked for, and that outside of every namespace.
static void registerDrawing()
{
    Q_INIT_RESOURCE(program);
}

namespace quorvia::platform {

QImage programDrawing(int side)
{
    registerDrawing();
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    QSvgRenderer(QStringLiteral(":/quorvia/quorvia.svg")).render(&painter, QRectF(0, 0, side, side));
    return image;
}

QIcon programIcon()
{
    QIcon icon;
    for (const int side : {16, 24, 32, 48, 64, 128})
        icon.addPixmap(QPixmap::fromImage(programDrawing(side)));
    return icon;
}

} // namespace quorvia::platform

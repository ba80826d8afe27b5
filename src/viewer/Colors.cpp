#include "viewer/Colors.h"

#include <QPalette>
#include <QWidget>

namespace quorvia::viewer {

int toColorNumber(const QColor& color)
{
    return color.red() | color.green() << 8 | color.blue() << 16;
}

QColor fromColorNumber(int number)
{
    return {number & 0xff, number >> 8 & 0xff, number >> 16 & 0xff};
}

QColor paneColor(const QWidget* pane)
{
    return pane->palette().color(QPalette::Window);
}

void setPaneColor(QWidget* pane, const QColor& color)
{
    QPalette palette = pane->palette();
    palette.setColor(QPalette::Window, color);
    pane->setPalette(palette);
}

} // namespace quorvia::viewer

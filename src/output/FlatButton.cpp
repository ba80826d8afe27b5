#include "output/FlatButton.h"

#include "platform/Contrast.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>

namespace quorvia::output {

FlatButton::FlatButton(const char* name, const QString& text, QWidget* parent) : QPushButton(text, parent)
{
    setObjectName(QLatin1String(name));
    setAccessibleName(text);
    setAutoDefault(false); // Enter in a box is not to print
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
}

QSize FlatButton::sizeHint() const
{
    constexpr int aside = 10; // pixels
    constexpr int above = 5;
    return fontMetrics().size(Qt::TextSingleLine, text()) + QSize(2 * aside, 2 * above);
}

bool FlatButton::event(QEvent* event)
{
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave)
        update();
    return QPushButton::event(event);
}

void FlatButton::keyPressEvent(QKeyEvent* event)
{
    const bool enters = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enters)
        QPushButton::keyPressEvent(event);
    else if (!event->isAutoRepeat())
        click();
}

void FlatButton::paintEvent(QPaintEvent*)
{
    constexpr double usual = 0.09;
    constexpr double hovered = 0.16;
    constexpr double pressed = 0.24;
    constexpr int focusInset = 2;
    QPainter painter(this);
    painter.fillRect(rect(), platform::tint(palette(), isDown() ? pressed : underMouse() ? hovered : usual));
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
    if (!hasFocus())
        return;
    painter.setPen(palette().color(QPalette::Highlight));
    painter.drawRect(rect().adjusted(focusInset, focusInset, -focusInset - 1, -focusInset - 1));
}

} // namespace quorvia::output

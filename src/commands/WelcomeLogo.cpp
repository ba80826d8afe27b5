#include "commands/WelcomeLogo.h"

#include "platform/Contrast.h"
#include "platform/Icons.h"

#include <QFontInfo>
#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace quorvia::commands {

namespace {

constexpr int side = 56; // of the drawing, pixels as all below
constexpr int gap = 12;
constexpr int edge = 10;

QString portal()
{
    return QStringLiteral("Lindora Center");
}

} // namespace

QString logoCommand(Qt::MouseButton button, Qt::KeyboardModifiers modifiers)
{
    if ((modifiers & ~Qt::KeypadModifier) != Qt::NoModifier)
        return QStringLiteral("miOpen");
    return button == Qt::LeftButton ? QStringLiteral("miLindoraCenter") : QString();
}

WelcomeLogo::WelcomeLogo(QWidget* parent) : QWidget(parent)
{
    setAccessibleName(portal());
    setToolTip(portal());
    setCursor(Qt::PointingHandCursor);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

QFont WelcomeLogo::nameFont() const
{
    constexpr double larger = 1.7;
    QFont large = font();
    large.setPointSizeF(QFontInfo(large).pointSizeF() * larger);
    return large;
}

QSize WelcomeLogo::sizeHint() const
{
    const QFontMetrics metrics(nameFont());
    return {2 * edge + side + gap + metrics.horizontalAdvance(portal()),
            2 * edge + std::max(side, metrics.height())};
}

void WelcomeLogo::paintEvent(QPaintEvent*)
{
    constexpr double atRest = 0.55;
    constexpr double underPointer = 0.9;
    const QColor ink = platform::tint(palette(), underMouse() ? underPointer : atRest);
    QPainter painter(this);
    QPixmap sign = platform::drawing(QStringLiteral("lindora"), qRound(side * devicePixelRatioF()), ink);
    sign.setDevicePixelRatio(devicePixelRatioF());
    painter.drawPixmap(edge, (height() - side) / 2, sign);
    painter.setFont(nameFont());
    painter.setPen(ink);
    painter.drawText(rect().adjusted(edge + side + gap, 0, 0, 0), int(Qt::AlignLeft | Qt::AlignVCenter),
                     portal());
}

void WelcomeLogo::mousePressEvent(QMouseEvent* event)
{
    m_pressed = event->button();
    event->setAccepted(!logoCommand(event->button(), event->modifiers()).isEmpty());
}

/// The second click of two is none of its own.
void WelcomeLogo::mouseDoubleClickEvent(QMouseEvent* event)
{
    event->setAccepted(!logoCommand(event->button(), event->modifiers()).isEmpty());
}

void WelcomeLogo::mouseReleaseEvent(QMouseEvent* event)
{
    const QString command = logoCommand(event->button(), event->modifiers());
    const bool begunHere = std::exchange(m_pressed, Qt::NoButton) == event->button();
    event->setAccepted(!command.isEmpty());
    if (!command.isEmpty() && begunHere && rect().contains(event->position().toPoint()))
        Q_EMIT commandChosen(command);
}

void WelcomeLogo::enterEvent(QEnterEvent*)
{
    update();
}

void WelcomeLogo::leaveEvent(QEvent*)
{
    update();
}

} // namespace quorvia::commands

#include "controls/uLink.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <utility>

namespace quorvia::controls {

uLink::uLink(Opener opener, QWidget* parent)
    : QWidget(parent), m_opener(std::move(opener)), m_lMsg(new QLabel(this))
{
    m_lMsg->setObjectName(QStringLiteral("lMsg"));
    m_lMsg->setTextFormat(Qt::PlainText);
    m_lMsg->setAttribute(Qt::WA_TransparentForMouseEvents); // the control takes the click, and shows the tip
    QPalette colors;
    colors.setColor(QPalette::WindowText, QColor(0, 121, 191));
    setPalette(colors);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    SetCaption(QStringLiteral("Launch Web-Browser..."));
}

void uLink::SetCaption(const QString& caption)
{
    m_lMsg->setText(caption);
    setAccessibleName(caption);
    resize(m_lMsg->sizeHint());
}

void uLink::SetLinkURL(const QString& link)
{
    m_lMsg->setToolTip(link);
    setToolTip(link);
}

void uLink::resizeEvent(QResizeEvent*)
{
    m_lMsg->setGeometry(rect());
}

void uLink::mousePressEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        m_pressed = true;
    else
        QWidget::mousePressEvent(event);
}

void uLink::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && std::exchange(m_pressed, false) &&
        rect().contains(event->position().toPoint()))
        open();
}

/// The second click of two is none of its own: whoever is used to double clicks gets the link once.
void uLink::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        QWidget::mouseDoubleClickEvent(event);
}

void uLink::keyPressEvent(QKeyEvent* event)
{
    const bool plain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const bool opens =
        event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!plain || !opens)
        QWidget::keyPressEvent(event);
    else if (!m_repeats.isRepeat(*event))
        open();
}

void uLink::keyReleaseEvent(QKeyEvent* event)
{
    m_repeats.noteRelease(*event);
    QWidget::keyReleaseEvent(event);
}

void uLink::focusInEvent(QFocusEvent* event)
{
    showFocus(event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason);
}

void uLink::focusOutEvent(QFocusEvent*)
{
    showFocus(false);
}

void uLink::showFocus(bool focused)
{
    QFont font; // all but the line stays the control's
    if (focused)
        font.setUnderline(true);
    m_lMsg->setFont(font);
}

void uLink::open()
{
    if (!LinkURL().isEmpty())
        m_opener(LinkURL());
}

} // namespace quorvia::controls

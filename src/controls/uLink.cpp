#include "controls/uLink.h"

#include <QKeyEvent>
#include <QMouseEvent>

namespace quorvia::controls {

uLink::uLink(Opener opener, QWidget* parent)
    : QWidget(parent), m_opener(std::move(opener)), m_lMsg(new QLabel(this))
{
    m_lMsg->setObjectName(QStringLiteral("lMsg"));
    m_lMsg->setTextFormat(Qt::PlainText);
    m_lMsg->setAttribute(Qt::WA_TransparentForMouseEvents); // the control takes the click, and shows the tip
    QPalette colors = m_lMsg->palette();
    colors.setColor(QPalette::WindowText, QColor(0, 121, 191));
    m_lMsg->setPalette(colors);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::TabFocus);
    SetCaption(QStringLiteral("Launch Web-Browser..."));
}

void uLink::SetCaption(const QString& caption)
{
    m_lMsg->setText(caption);
    setAccessibleName(caption);
    resize(sizeHint());
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

void uLink::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        open();
}

void uLink::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Space || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        open();
    else
        QWidget::keyPressEvent(event);
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
    QFont font = m_lMsg->font();
    font.setUnderline(focused);
    m_lMsg->setFont(font);
}

void uLink::open()
{
    if (!LinkURL().isEmpty())
        m_opener(LinkURL());
}

} // namespace quorvia::controls

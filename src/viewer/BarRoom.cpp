#include "viewer/BarRoom.h"

#include <QEvent>
#include <QPlainTextEdit>
#include <QScrollBar>

namespace quorvia::viewer {

BarRoom::BarRoom(QPlainTextEdit* box) : QObject(box), m_box(box)
{
    box->installEventFilter(this);
    setPolicy();
}

bool BarRoom::eventFilter(QObject* watched, QEvent* event)
{
    const QEvent::Type type = event->type();
    if (watched == m_box &&
        (type == QEvent::Resize || type == QEvent::FontChange || type == QEvent::StyleChange))
        setPolicy();
    return false;
}

void BarRoom::setPolicy()
{
    const int margins = 2 * (m_box->frameWidth() + int(m_box->document()->documentMargin()));
    const int bar = m_box->verticalScrollBar()->sizeHint().width();
    const bool hasRoom = m_box->width() >= bar + margins + m_box->fontMetrics().maxWidth();
    m_box->setVerticalScrollBarPolicy(hasRoom ? Qt::ScrollBarAsNeeded : Qt::ScrollBarAlwaysOff);
}

} // namespace quorvia::viewer

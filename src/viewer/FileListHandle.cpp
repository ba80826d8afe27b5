#include "viewer/FileListHandle.h"

#include "platform/MenuControl.h"

#include <algorithm>
#include <utility>

namespace quorvia::viewer {

FileListHandle::FileListHandle(Parts parts)
    : DragHandle(Qt::Horizontal, QStringLiteral("pMove"), parts.pMain), m_parts(parts)
{
    hide();
    connect(this, &DragHandle::dragged, this, &FileListHandle::drag);
    connect(this, &DragHandle::released, this, &FileListHandle::drop);
}

void FileListHandle::place(int width)
{
    const int area = m_parts.bPlay->dockingArea();
    const bool beside = m_parts.bPlay->visible() && platform::isUpright(area);
    setVisible(beside && !m_parts.pTop->isHidden());
    if (!beside || isDragged())
        return;
    m_from.reset(); // of a drag whose release went elsewhere
    const QRect view(m_parts.pTop->mapTo(m_parts.pMain, QPoint()), m_parts.pTop->size());
    const int left = area == platform::dockingArea::left ? view.left() - width : view.right() + 1;
    setGeometry(left, view.top(), width, view.height());
    raise();
}

void FileListHandle::drag(int offset)
{
    if (!m_from)
        m_from = x();
    move(std::clamp(x() + offset, 0, m_parts.pMain->width() - width()), y());
    raise();
}

void FileListHandle::drop()
{
    if (!m_from)
        return;
    const int across = x() - *std::exchange(m_from, std::nullopt);
    const bool onTheRight = m_parts.bPlay->dockingArea() == platform::dockingArea::right;
    m_parts.bPlay->setWidth(m_parts.bPlay->width() + (onTheRight ? -across : across));
    Q_EMIT moved();
}

} // namespace quorvia::viewer

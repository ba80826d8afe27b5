// The handle beside a docked file list: dragged, it gives the list another width.
#pragma once

#include "viewer/DragHandle.h"

#include <optional>

namespace quorvia::platform {
class Band;
}

namespace quorvia::viewer {

class FileListHandle : public DragHandle
{
    Q_OBJECT

  public:
    struct Parts
    {
        QWidget* pMain;        ///< the pane that the handle moves in
        QWidget* pTop;         ///< the pane that the list stands beside
        platform::Band* bPlay; ///< the list's
    };

    /// Named pMove, hidden.
    explicit FileListHandle(Parts parts);

    /// Shows the handle between list and pTop, `width` pixels wide, when the list stands beside pTop; else
    /// hides it.
    void place(int width);

  Q_SIGNALS:
    /// The handle was let go, and the list has another width.
    void moved();

  private:
    void drag(int offset);
    void drop();

    Parts m_parts;
    std::optional<int> m_from; ///< where it stood before its drag, pixels
};

} // namespace quorvia::viewer

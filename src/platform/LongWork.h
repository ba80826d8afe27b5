// For loops over many items: the windows stay alive while one goes on. Dear is that nothing the user does
// reaches the rest of the program meanwhile.
#pragma once

#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>
#include <memory>

namespace quorvia::platform {

/// One piece of work in many steps, in the user-interface thread. While it goes on the windows stay painted;
/// after a second a box with Cancel shows how far it is. Keys, clicks and closing of windows wait for the end
/// until the box shows, and then reach the box alone. Work inside other work has no box of its own: the
/// outermost piece's stands for all of them, and its Cancel ends all.
class LongWork
{
  public:
    /// Milliseconds that have passed since whatever moment; never fewer than before.
    using Clock = std::function<qint64()>;

    /// `owner` (may be null): the window that the box belongs to; `text`: what is being done, letter for
    /// letter.
    LongWork(QWidget* owner, const QString& text);
    /// The same by `clock`, for tests. Work inside other work goes by the outermost's.
    LongWork(QWidget* owner, const QString& text, Clock clock);
    /// Closes the box.
    ~LongWork();
    LongWork(const LongWork&) = delete;
    LongWork& operator=(const LongWork&) = delete;

    /// Told before each step: `done` steps of `total` (0: not known). Cheap. Timers and the like may run in
    /// it. False once the user has cancelled or the owner has been destroyed, and then always.
    bool goOn(int done = 0, int total = 0);

    /// Cancels whatever goes on, as the user does: the program is about to end.
    static void cancelAll();

  private:
    class Run;

    /// The window that work was begun for.
    struct Owner
    {
        bool isGone() const { return wasGiven && widget.isNull(); }

        QPointer<QWidget> widget;
        bool wasGiven = false;
    };

    static std::weak_ptr<Run>& current();

    Owner m_owner;
    std::shared_ptr<Run> m_run; ///< the outermost piece's, shared by all inside it
    bool m_isOutermost = false;
};

} // namespace quorvia::platform

// Holds the desktop's screen saver back while something is shown. Asks over the session bus from a thread of
// its own, so that no call here waits; without a bus or a screen saver there everything goes on as it would.
#pragma once

#include <QObject>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>

namespace quorvia::platform {

class ScreenSaverGuard
{
  public:
    struct Texts
    {
        QString application; ///< who asks
        QString reason;      ///< why; a desktop may show both to the user
    };

    /// `failed` gets one line, on the thread that made the guard and from its event loop, when the screen
    /// saver could not be held back; it may be empty. An answer is awaited for `patience`. Nothing is asked
    /// yet.
    ScreenSaverGuard(Texts texts, std::function<void(const QString& why)> failed,
                     std::chrono::milliseconds patience = std::chrono::seconds(10));
    /// Releases. Waits for the thread, at most a quarter of a second, and that only for a bus or a desktop
    /// that does not answer.
    ~ScreenSaverGuard();
    ScreenSaverGuard(const ScreenSaverGuard&) = delete;
    ScreenSaverGuard& operator=(const ScreenSaverGuard&) = delete;

    /// Asks the desktop to hold its screen saver back, unless that has been asked already. Comes back at
    /// once.
    void hold();
    /// Asks to let it go again; when the first question has not been answered yet, as soon as it is. Comes
    /// back at once.
    void release();
    bool isHeld() const { return m_held; }

  private:
    class Asker;

    void report(const QString& why);

    Texts m_texts;
    std::function<void(const QString& why)> m_failed;
    std::chrono::milliseconds m_patience;
    bool m_held = false;
    QObject m_home;                 ///< what the thread says arrives here, while the guard lives
    std::unique_ptr<Asker> m_asker; ///< from the first hold() on
};

} // namespace quorvia::platform

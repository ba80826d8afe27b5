// A timer of the filmstrip that can be paused: what is begun meanwhile ticks once it goes on.
#pragma once

#include <QTimer>

namespace quorvia::collections {

class StripTimer : public QTimer
{
  public:
    /// Ticks from now on, or from when the timer goes on.
    void begin()
    {
        m_due = true;
        if (!m_paused)
            start();
    }
    /// The same, each `interval` milliseconds.
    void begin(int interval)
    {
        setInterval(interval);
        begin();
    }
    void end()
    {
        m_due = false;
        stop();
    }
    /// True from begin() to end(), paused or not.
    bool isDue() const { return m_due; }
    void SetPaused(bool paused)
    {
        if (paused == m_paused)
            return;
        m_paused = paused;
        if (paused)
            stop();
        else if (m_due)
            start();
    }

  private:
    bool m_due = false;
    bool m_paused = false;
};

} // namespace quorvia::collections

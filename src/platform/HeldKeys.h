// Keys that are held down while one question comes after the other. Costs a look at each key that is pressed.
#pragma once

#include <QObject>

class QKeyEvent;

namespace quorvia::platform {

/// While it watches, a key that is held down counts once in the whole program, whatever windows come and go
/// meanwhile: the repeats of one window are a first press to the next.
class HeldKeys : public QObject
{
  public:
    using QObject::QObject;

    void watch();
    void rest();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool isRepeat(const QKeyEvent& press) const;

    int m_key = 0;
    ulong m_time = 0;      ///< of its press: milliseconds of the display's clock; 0 when nobody told
    ulong m_released = 0;  ///< when it was let go last, likewise
    bool m_isHeld = false; ///< what came last does not count
};

} // namespace quorvia::platform

// Keys that are held down while windows come and go: the repeats of one window are a first press to the next.
// Costs a look at each key that is pressed.
#pragma once

#include "platform/KeyRepeats.h"

#include <QAbstractNativeEventFilter>
#include <QObject>

namespace quorvia::platform {

class HeldKeys : public QObject, private QAbstractNativeEventFilter
{
  public:
    using QObject::QObject;
    ~HeldKeys() override { rest(); }

    /// From now on a key that is held down counts once in the whole program, whatever windows come and go.
    void watch();
    /// From now on keys are only looked at, so that dropHeld() knows which one is down. A modal window that
    /// comes or goes drops the held key by itself: it answers no question that comes up under it, and what
    /// closed a window does nothing to the one below.
    void observe();
    /// Nothing is looked at any more.
    void rest();
    /// A window has come or gone: the key that is down now, if one is, counts no more until it is pressed
    /// anew. Only while keys are looked at.
    void dropHeld();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
    void look(bool dropsAll);

    bool m_dropsAll = false;
    int m_dropped = 0; ///< the key that counts no more
    KeyRepeats m_repeats;
    bool m_isHeld = false; ///< what came last does not count
};

} // namespace quorvia::platform

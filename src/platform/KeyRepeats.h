// Tells the presses of a key from its repeats while it is held down, also where the display names no repeat
// as such: by the times of what it tells, where that lets the key go just before each repeat. One that lets
// it go right behind each press looks like a finger that taps: there a repeat is known only behind one that
// was, for no press of the user's may be lost.
#pragma once

#include <QtGlobal>

#include <array>

class QKeyEvent;

namespace quorvia::platform {

class KeyRepeats
{
  public:
    /// A press has come; a key that is held gives one after the other. True when it is such a repeat. To be
    /// asked once for each.
    bool isRepeat(const QKeyEvent& press);
    /// The key of `release` has been let go.
    void noteRelease(const QKeyEvent& release);
    /// The same, as the display itself says it: by the code of the key there, at `time` of its clock. It may
    /// come before the press does, which waits in a queue of the toolkit.
    void noteRelease(quint32 scanCode, ulong time);
    /// True when `press` is the very one that came last.
    bool isLast(const QKeyEvent& press) const;
    /// The key of the last press; 0 before the first.
    int key() const { return m_key; }

  private:
    bool repeats(const QKeyEvent& press) const;

    int m_key = 0;
    bool m_isRun = false;   ///< the last press was a repeat
    quint32 m_scanCode = 0; ///< the display's name for it; 0 when nobody told
    ulong m_time = 0;       ///< of its press: milliseconds of the display's clock; 0 when nobody told
    ulong m_released = 0;   ///< when it was let go last, likewise
    std::array<ulong, 256> m_releases = {}; ///< by code: the same of each key, as far as the display said it
};

} // namespace quorvia::platform

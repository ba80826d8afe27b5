#include "platform/KeyRepeats.h"

#include <QKeyEvent>

#include <algorithm>

namespace quorvia::platform {

namespace {

/// Repeats come closer than this, even where they are slow. A press that was let go for good is no repeat
/// however close it is; behind a repeat it may be the next one of a display that lets the key go at once.
constexpr ulong closest = 300; // milliseconds
/// The first repeat comes after this at most. A key that was let go in another program is not waited for
/// longer.
constexpr ulong longestDelay = 1500; // milliseconds
/// Where the display lets a key go for each repeat, the press follows sooner than a finger could.
constexpr ulong fastestFinger = 25; // milliseconds

} // namespace

bool KeyRepeats::isRepeat(const QKeyEvent& press)
{
    const bool repeat = repeats(press);
    m_isRun = repeat;
    m_key = press.key();
    m_scanCode = press.nativeScanCode();
    m_time = press.timestamp();
    return repeat;
}

void KeyRepeats::noteRelease(const QKeyEvent& release)
{
    if (release.key() == m_key && !release.isAutoRepeat())
        m_released = release.timestamp();
}

void KeyRepeats::noteRelease(quint32 scanCode, ulong time)
{
    if (scanCode < m_releases.size())
        m_releases[scanCode] = time;
}

bool KeyRepeats::isLast(const QKeyEvent& press) const
{
    return press.key() == m_key && press.timestamp() == m_time && m_time != 0;
}

bool KeyRepeats::repeats(const QKeyEvent& press) const
{
    if (press.isAutoRepeat())
        return true;
    if (press.key() != m_key || press.timestamp() == 0)
        return false;
    const ulong since = press.timestamp() - m_time;
    const ulong said = m_scanCode < m_releases.size() ? m_releases[m_scanCode] : 0;
    const ulong released = std::max(m_released, said);
    const bool isDown = released < m_time || press.timestamp() - released < fastestFinger;
    return (isDown && since < longestDelay) || (m_isRun && since < closest);
}

} // namespace quorvia::platform

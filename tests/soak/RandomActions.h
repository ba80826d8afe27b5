// What a step of the soak does, drawn from its seed and number alone, so that a run that began in the middle
// does the same. Every number comes from the generator's raw ones by our own reduction: the same on every
// machine.
#pragma once

#include <QString>

#include <random>

namespace quorvia::test {

/// The random numbers of one step.
class StepRandom
{
  public:
    StepRandom(quint32 seed, int step);

    /// A number from 0 to `count` - 1; `count` is at least 1.
    int below(int count);
    /// True once in `count` times.
    bool oneIn(int count) { return below(count) == 0; }
    /// One of the entries of `all`, which is not empty.
    template <class All>
    auto& oneOf(const All& all)
    {
        return all[typename All::size_type(below(int(std::size(all))))];
    }

  private:
    std::mt19937 m_raw;
};

enum class ActionKind { Command, Key, Click, Drag, Wheel, Resize, Open, Outsider, Clipboard, Terminate };

/// The kind's name in the journal.
QString nameOf(ActionKind kind);
/// Draws a kind, by their weights.
ActionKind drawKind(StepRandom& random);

/// A key as the platform tells it.
struct KeyPress
{
    Qt::Key key = Qt::Key_unknown;
    Qt::KeyboardModifiers modifiers = {};
    QString text = {}; ///< what it types; "/" and "\" are never among it, which could lead out of the home
};

/// A key for the main window: shortcuts, fixed keys, moving keys, letters.
KeyPress drawMainKey(StepRandom& random);
/// A key for a dialog or a menu: more of what moves, chooses, types and ends.
KeyPress drawDialogKey(StepRandom& random);

} // namespace quorvia::test

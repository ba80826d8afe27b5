// Keys and mouse as the platform tells them: through the toolkit's own door, so that modal windows and menus
// take or refuse them as they do at a desk.
#pragma once

#include "RandomActions.h"

class QWidget;
class QWindow;

namespace quorvia::test {

/// The menu, else the modal window that has all input now; null when there is none.
QWidget* blocker();
/// The window that input goes to: the blocker's, else the active one, else `main` when it shows, else null.
QWindow* inputWindow(const QWidget* main);

void press(QWindow* window, const KeyPress& key);
/// A click, sometimes a second one behind it, sometimes with a modifier, at a random place.
void clickSomewhere(QWindow* window, StepRandom& random);
/// A drag from one random place to another.
void dragSomewhere(QWindow* window, StepRandom& random);
/// Turns the wheel over a random place.
void turnWheel(QWindow* window, StepRandom& random);

} // namespace quorvia::test

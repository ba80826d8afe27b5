// The keys that stand for a right click, wherever in a window they come: the menu key, of which the toolkit
// makes a question for a menu by itself, and Shift+F10 where a keyboard has none.
#pragma once

class QEvent;
class QKeyEvent;
class QWidget;

namespace quorvia::platform {

/// True for Shift+F10, pressed and not held.
bool isMenuKey(const QKeyEvent& key);
/// Asks what has the keys in `window` for its menu, at its caret or in its middle, as the toolkit does for
/// the menu key. What is not taken there goes up to the window.
void askForMenu(QWidget& window);
/// True for a question for a menu that came of a key.
bool asksForMenu(const QEvent& event);

} // namespace quorvia::platform

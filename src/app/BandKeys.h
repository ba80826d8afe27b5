// What the client of a band does with a key that nobody within it took.
#pragma once

class QKeyEvent;
class QWidget;

namespace quorvia::app {

class MainWindow;

/// Asks for the menu where `key`, pressed in `client`, is the key for that, and hands any other to `main`. It
/// is taken for good then: by way of the parents it would reach the main window a second time.
void takeBandKey(const QWidget& client, const QKeyEvent& key, MainWindow& main);

} // namespace quorvia::app

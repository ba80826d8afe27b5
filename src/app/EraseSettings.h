// The user's way to a program without settings: a question, and what Yes does. What cannot be undone, so that
// it has one place for all who offer it.
#pragma once

#include "platform/Dialogs.h"

namespace quorvia::app {

/// Asks whether to erase the settings.
platform::MessageBox eraseBox();

/// Shows eraseBox() over `owner` (may be null) and waits; on Yes erases the sections `Settings`, "Print
/// Settings" and `SettingsNet` of the user's tree. True when they are erased: the process must end at once
/// then, before anything is written anew.
bool askToErase(QWidget* owner);

/// Ends the process with success, without closing any window.
[[noreturn]] void endProcess();

} // namespace quorvia::app

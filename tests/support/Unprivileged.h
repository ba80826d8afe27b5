// Runs a check as a user without privileges, so that "no permission" cases hold when the tests run as root.
#pragma once

#include <functional>

namespace quorvia::test {

/// What `check` gives, called in a child process of the user "nobody" when this process is root's, else in
/// place. The child only runs `check`: no test macros in it, and the paths it uses must be open to everyone.
bool holdsUnprivileged(const std::function<bool()>& check);

/// Lets everyone enter and read the directory `path` (a QTemporaryDir is its owner's alone).
bool openToEveryone(const char* path);

} // namespace quorvia::test

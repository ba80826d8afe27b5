// Runs a check in a child process, where it may end the process or use up what the process has.
#pragma once

#include <functional>

namespace quorvia::test {

/// What `check` gives, called in a child process; -1 when the child ended otherwise (an exception got out, a
/// crash). No test macros in `check`.
int heldInChild(const std::function<bool()>& check);

} // namespace quorvia::test

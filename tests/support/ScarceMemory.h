// Runs a check where memory has run out, so that what then happens can be tested.
#pragma once

#include <QtGlobal>

#include <functional>

namespace quorvia::test {

/// What `check` gives, called in a child process that can get about `spare` bytes more than it has; -1 when
/// the child ended otherwise (an exception got out, a crash), -2 where memory cannot be limited (under a
/// sanitizer). No test macros in `check`.
int heldWithMemory(qint64 spare, const std::function<bool()>& check);

} // namespace quorvia::test

// Lets pending events run in the middle of an operation, at the few points where that is meant to happen.
#pragma once

#include <functional>

namespace quorvia::app {

/// Handles the events that wait now. Code after this call must expect that anything may have happened.
void letPendingEventsRun();

/// The same without keys and mouse, which wait for the next time. For the middle of an operation that a held
/// key asks for again and again: each would begin inside the one before, and none would end.
void letPendingEventsRunButInput();

/// Handles events until `done` gives true or `milliseconds` have passed; the result is the last answer of
/// `done`.
bool letEventsRunUntil(const std::function<bool()>& done, int milliseconds);

} // namespace quorvia::app

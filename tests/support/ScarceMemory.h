// Runs a check where memory has run out, so that what then happens can be tested. Not for programs under a
// sanitizer, which needs the address space for itself.
#pragma once

#include <QtGlobal>

#include <functional>

namespace quorvia::test {

/// The same as heldInChild(), in a child that can get about `spare` bytes more than it has.
int heldWithMemory(qint64 spare, const std::function<bool()>& check);

} // namespace quorvia::test

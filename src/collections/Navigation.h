// Which entry of a list comes next. Positions are 0-based; -1 is none.
#pragma once

#include <functional>

namespace quorvia::collections {

/// The first entry after `index` that `exists`, up to the last; else the first from 0 up to `index`; -1 when
/// there is none. -1 as `index` begins at the first entry.
int nextIndex(int index, int count, const std::function<bool(int)>& exists);

/// One before `index`, the last one from 0: existence is not looked at. The result of -1 as `index` is no
/// position.
int previousIndex(int index, int count);

/// The whole part of `unit` (0 up to but not 1) times `count`.
int randomIndex(double unit, int count);

} // namespace quorvia::collections

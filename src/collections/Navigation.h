// Which entry of a list comes next. Positions are 0-based; -1 is none. A result may lie beyond the list: what
// that means is for the list to say.
#pragma once

#include <QTime>

#include <functional>

namespace quorvia::collections {

/// The entry after `index` of a list of `count`: the nearest one behind it that `exists`, and behind the last
/// the first that exists, looked for no further than `index` + 1. When that finds none the result is one
/// more: beyond the list from the last entry but one on, a vanished entry from any before. From -1 it is the
/// first entry, or the second when that has vanished. `exists` is asked about entries of the list only.
int nextIndex(int index, int count, const std::function<bool(int)>& exists);

/// One before `index`; the last one from 0 and from -1. Existence is not looked at.
int previousIndex(int index, int count);

/// The whole part of `unit` (0 up to but not 1) times `count`.
int randomIndex(double unit, int count);

/// The time of day in seconds, as exact as single precision is: about a hundredth of a second in the evening.
float secondsSinceMidnight(QTime time);
/// A value from 0 up to but not 1 of a generator that starts anew from `seconds`: the same seconds give the
/// same value.
double randomUnit(float seconds);

} // namespace quorvia::collections

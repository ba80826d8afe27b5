// The tips of the day: which of the fourteen the welcome panel gives out. Plain arithmetic over a source of
// random numbers that the caller makes.
#pragma once

#include <QString>
#include <QStringList>

#include <functional>

namespace quorvia::commands {

/// Gives the next number of a random sequence, from 0 to 1.
using UnitSource = std::function<double()>;

/// The number of the next tip, 1 to 14, where `last` is the one given out before. A draw is
/// 13 x unit + 1, rounded to the nearest whole number (an exact half to the even one), so that 1 and 14 come
/// half as often as the others. A draw of `last` is made once more from the same source and then stands.
int pickTip(int last, const UnitSource& units);

/// The text of the tip `number`, 1 to 14; empty for any other.
QString tipText(int number);

/// The texts of `count` tips, one picked after the other from a source of its own, which `seeded` makes.
/// `last` is the number of the tip given out last (0: none yet) and becomes that of the last one here.
QStringList drawTips(int count, int& last, const std::function<UnitSource()>& seeded);

/// A source that starts anew from the clock, which it reads in nanoseconds: sources made one right after the
/// other differ.
UnitSource unitsFromClock();

} // namespace quorvia::commands

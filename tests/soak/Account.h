// What a run has done, by its journal, and the least that it must have done: a run that meets nothing finds
// nothing.
#pragma once

#include "Journal.h"
#include "SoakPlan.h"

#include <QStringList>

namespace quorvia::test {

/// The number of the last step; 0 of none.
int lastStep(const QList<JournalLine>& lines);

/// How many commands and keys there were.
int inputCount(const QList<JournalLine>& lines);

/// The longest time between two steps of one process, in milliseconds.
int longestGap(const QList<JournalLine>& lines);

/// How often each kind came, which windows were shown and which were not, the different commands, the longest
/// gap: for people.
QStringList figures(const QList<JournalLine>& lines);

/// The windows and panels of the program, by the names of their widgets; menus are not among them.
QStringList programWindows();

/// Those of programWindows() that were not shown.
QStringList neverShown(const QList<JournalLine>& lines);

/// What there was too little of in a run of `inputs` commands and keys.
QStringList floorFaults(const QList<JournalLine>& lines, int inputs);

/// The commands of the table that were not run, each by its name. For a run so long that all have their turn.
QStringList commandFaults(const QList<JournalLine>& lines);

/// Why a process that did what `plan` says and ended with code 0 has not ended as it should; empty when it
/// has: at its end, or by the end of all settings, to which somebody has just said yes. `lines` is the whole
/// journal.
QString earlyEnd(const QList<JournalLine>& lines, const SoakPlan& plan);

/// Whether the last process came to its end.
bool isAtEnd(const QList<JournalLine>& lines);

} // namespace quorvia::test

// The check for a newer version: decides when it is due, once a calendar week, and starts the updater, a
// program of its own, which may store the version that it found as `Latest Version`. Nothing here waits or
// uses the network.
#pragma once

#include "platform/Shell.h"

#include <QDate>
#include <QString>
#include <QStringList>

#include <functional>

class QWidget;

namespace quorvia::system {

struct UpdateSinks
{
    std::function<QDate()> today;
    std::function<bool()> isConnected;
    std::function<platform::ShellCode(const QString& program, const QStringList& arguments)> start;
};

/// `day` in the form "wwyyyy": the week of the year, counted from the one that holds the first of January and
/// begun by Sundays, without leading zeros; then the year.
QString weekOfYear(QDate day);

/// What the updater is told; `report` and `forced` as for CheckForUpdate().
QStringList updaterArguments(bool report, bool forced);

/// Starts the updater when the check is due, or `forced`, and the updater is there and the machine connected;
/// then the week counts as checked. `report`: it is to note the installation.
void CheckForUpdate(bool report, bool forced, const UpdateSinks& sinks);

/// Tells the user what follows, and checks when he agrees. `owner` is the box's.
void askAndCheckForUpdate(QWidget* owner, const UpdateSinks& sinks);

/// True at the first call since this version of the program was installed.
bool isFirstStartOfVersion();

} // namespace quorvia::system

// What happens before the main window is loaded: the probe of the machine-wide store, the data directories,
// and the clean-up of an uninstall.
#pragma once

#include <QString>

namespace quorvia::app {

/// Writes the probe value into the machine-wide store. False, after a message box, when its key cannot be
/// created: the process must end then.
bool probeMachineStore();

/// Gives each of the three relocatable data directories a place: where the store names none, the default
/// below `installPath` (ends in "/") is created when missing and stored. A stored place is kept.
void prepareDataDirectories(const QString& installPath);

/// Makes data directories that have gone since they were stored. The description directory is looked for at
/// the thumbnails' place, so that it is made anew only when both are missing.
void repairDataDirectories(const QString& installPath);

/// Takes the program's traces out of both trees of the store and deletes `playlist.qol` in `installPath`.
/// False when the other tools are still told where the program is, as when another program holds the store.
bool removeSettings(const QString& installPath);

} // namespace quorvia::app

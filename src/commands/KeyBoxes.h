// What the message boxes of the keys say. Values only.
#pragma once

#include "platform/Dialogs.h"

#include <QString>

namespace quorvia::commands {

/// What the information box lists.
struct ProgramFacts
{
    QString name;
    QString version;           ///< as in "1.0.0"
    QString interfaceVersions; ///< of the menu control
    int imagesOpened = 0;
    QString file; ///< data of the program's own file
};

/// Asks whether to view the help page, or the page of the shortcut keys.
platform::MessageBox helpBox();
platform::MessageBox shortcutHelpBox();
/// Lists the facts, one a line.
platform::MessageBox informationBox(const ProgramFacts& facts);
/// Tells of the imaging control: its version and the types that it opens.
platform::MessageBox engineBox();

/// Path, size and last-written time of the file at `path`, in one line; without the time when it cannot be
/// read.
QString fileData(const QString& path);

} // namespace quorvia::commands

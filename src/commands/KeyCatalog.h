// Every key of the main window in words, made of the very tables that the keyboard runs by. Values only; for
// the pages of help.
#pragma once

#include "commands/CommandCatalog.h"

#include <QString>

#include <vector>

namespace quorvia::commands {

struct KeyText
{
    int keyCode;  ///< a virtual key code
    int shift;    ///< 1 Shift, 2 Ctrl, 4 Alt; 0 too for a key that any modifier goes with
    QString keys; ///< as printed on a keyboard: "Ctrl+F"
    CommandGroup group;
    QString command; ///< as the tables name it; empty for a step of the keyboard's own
    QString text;    ///< a phrase without a full stop
};

/// The fixed keys, those of the shortcut table, the one of the mail tool, and the early ones. A shortcut that
/// a fixed key hides is left out.
std::vector<KeyText> mainWindowKeys();

/// The row under which `command` is told of: for another name, that of the command it stands for. Null for a
/// command that the catalog does not have.
const CommandText* catalogEntry(const QString& command);

} // namespace quorvia::commands

// What the program says of its own command line: the answer to --help, the manual page and what shells
// complete, all of one catalog of commands. Plain values, UTF-8; needs no window.
#pragma once

#include "commands/CommandCatalog.h"

#include <QByteArray>
#include <QList>

#include <span>
#include <vector>

namespace quorvia::commands {

/// A word of the command line that is no command.
struct LineOption
{
    const char* word; ///< as it is typed, "--help"
    const char* text; ///< a phrase without a full stop
};

/// All such words, in the order in which they are told of. The one of `messageOption()` is not among them.
std::span<const LineOption> lineOptions();
/// The command that carries a text of the user's; shells cannot complete it.
LineOption messageOption();

struct CommandLineGroup
{
    CommandGroup group;
    std::vector<CommandText> commands;
};

/// The commands that belong on a command line, by group, in the catalog's order.
std::vector<CommandLineGroup> commandLineGroups();
/// What `command` does, as a phrase; of another name for a command, that it is one.
QByteArray phraseOf(const CommandText& command);

/// The endings of the files that the program opens, in small letters and without a point: the pictures of a
/// folder's list, those that it opens when they are named, playlists.
QList<QByteArray> openedEndings();

/// The answer to --help.
QByteArray helpText();

/// The manual page quorvia(1), in the man macros. `version` is the program's, `date` that of its release,
/// year-month-day.
QByteArray manualPage(const QByteArray& version, const QByteArray& date);

/// What the shell bash reads to complete the words behind "quorvia".
QByteArray bashCompletion();
/// The same for zsh.
QByteArray zshCompletion();
/// The same for fish.
QByteArray fishCompletion();

} // namespace quorvia::commands

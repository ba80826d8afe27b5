// What each command does, in words: for the help on the command line, the manual page, the completion of
// shells and the pages of help. Values only; needs no window.
#pragma once

#include <span>

namespace quorvia::commands {

/// What a group of commands is about, in the order in which they are told of.
enum class CommandGroup {
    Files,
    Walking,
    View,
    SlideShow,
    Edits,
    Tools,
    Web,
    Program,
    OtherNames ///< names that menus and other programs use for a command which has a name above
};

struct CommandText
{
    const char* name; ///< as `ToolDispatcher` knows it
    CommandGroup group;
    const char* text; ///< a phrase without a full stop
};

/// All commands that have a row in the table of commands, by group.
std::span<const CommandText> commandCatalog();

/// A heading for the commands of `group`.
const char* headingOf(CommandGroup group);

/// Whether `command` belongs on a command line: the others act on what a menu was opened for, or on what has
/// just changed.
bool isForCommandLine(const CommandText& command);

} // namespace quorvia::commands

// What mouse and keys do beside the keys of the main window and of the full screen, which have tables of
// their own in the program. Values only.
#pragma once

#include <QStringList>

#include <span>

namespace quorvia::help {

struct OtherKey
{
    const char* keys; ///< one or several, separated by "|": "Ctrl+A", "Right click", "Wheel"
    const char* text; ///< what they do, a phrase without a full stop
};

/// The keys of the part of the program that is called `part`, in the order in which they are told of:
/// "image", "strip", "list", "tree", "information", "tabs", "fullmouse", "editor", "print", "clipboard",
/// "conversion", "preferences", "size". Empty for any other name.
std::span<const OtherKey> otherKeys(const QString& part);
/// The names of all parts.
QStringList otherParts();
/// The keys of a row, one by one.
QStringList separateKeys(const OtherKey& row);

} // namespace quorvia::help

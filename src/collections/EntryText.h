// The texts of the list of pictures: plain functions.
#pragma once

#include <QString>

namespace quorvia::collections {

/// The display name of a file: its name without folder and extension, and " (EXTENSION)".
QString displayName(const QString& path);

/// The display text of an entry: its 1-based number, ". " and the display name.
QString entryText(int number, const QString& path);

/// The display text of an entry whose file has gone; `text` is what it was before.
QString missingText(const QString& text);

/// The number that `text` begins with when it is the display text of an entry; 0 when it begins with none.
int numberOf(const QString& text);

/// What a mouse press makes of an entry's text: its first four " * " become " - ".
QString pressedText(const QString& text);

/// The line below the list: the count in groups of three digits, and " Images".
QString countText(int count);

} // namespace quorvia::collections

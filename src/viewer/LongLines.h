// Lines of many thousand letters in a text document. To lay a line out costs by its length with every key, so
// that a long one stands there as several blocks. What separates these is marked and no part of the text; the
// mark is the separator's own, so that it goes and comes with it, whatever is deleted, moved or undone.
#pragma once

#include <QString>

class QTextBlock;
class QTextCursor;

namespace quorvia::viewer {

/// The line `line` cut into pieces that are cheap to lay out, behind a blank where there is one near; never
/// within a character.
QStringList piecesOf(const QString& line);

/// Inserts `text`, lines ending in "\n", in place of what `cursor` has selected; one step to undo.
void insertLines(QTextCursor cursor, const QString& text);

/// True when `block` goes on with the line of the block before it.
bool continuesLine(const QTextBlock& block);

/// The text that `cursor` has selected, lines ending in "\n".
QString selectedLines(const QTextCursor& cursor);

} // namespace quorvia::viewer

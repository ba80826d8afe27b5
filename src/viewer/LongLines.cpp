#include "viewer/LongLines.h"

#include <QStringList>
#include <QTextBlock>
#include <QTextCursor>
#include <QTextDocument>
#include <QTextFormat>

#include <algorithm>

namespace quorvia::viewer {

namespace {

constexpr qsizetype longest = 8192; // letters: a key takes some milliseconds
constexpr qsizetype nearEnough = 1024;
constexpr int joint = QTextFormat::UserProperty + 1;

QTextCharFormat jointFormat()
{
    QTextCharFormat format;
    format.setProperty(joint, true);
    return format;
}

/// Whether text may not be cut before this: the second half of a letter, or what stands above or below one.
bool belongsToTheOneBefore(QChar character)
{
    return character.isLowSurrogate() || character.isMark() || character == QChar(0x200d) ||
           character == QChar(0xfe0f);
}

/// Where the piece of `line` that begins at `from` ends.
qsizetype endOfPiece(const QString& line, qsizetype from)
{
    const qsizetype most = from + longest;
    if (most >= line.size())
        return line.size();
    for (qsizetype end = most; end > most - nearEnough; --end) {
        if (line.at(end - 1).isSpace() && !belongsToTheOneBefore(line.at(end)))
            return end;
    }
    qsizetype end = most;
    while (end > most - nearEnough && belongsToTheOneBefore(line.at(end)))
        --end;
    return end;
}

} // namespace

QStringList piecesOf(const QString& line)
{
    QStringList pieces;
    qsizetype from = 0;
    do {
        const qsizetype end = endOfPiece(line, from);
        pieces.append(line.mid(from, end - from));
        from = end;
    } while (from < line.size());
    return pieces;
}

void insertLines(QTextCursor cursor, const QString& text)
{
    const QTextBlockFormat plain;
    cursor.beginEditBlock();
    cursor.removeSelectedText();
    bool firstLine = true;
    for (const QString& line : text.split(u'\n')) {
        if (!firstLine)
            cursor.insertBlock(plain, QTextCharFormat());
        firstLine = false;
        bool firstPiece = true;
        for (const QString& piece : piecesOf(line)) {
            if (!firstPiece)
                cursor.insertBlock(plain, jointFormat());
            firstPiece = false;
            cursor.insertText(piece, QTextCharFormat());
        }
    }
    cursor.endEditBlock();
}

bool continuesLine(const QTextBlock& block)
{
    return block.previous().isValid() && block.charFormat().boolProperty(joint);
}

QString selectedLines(const QTextCursor& cursor)
{
    const int start = cursor.selectionStart();
    const int end = cursor.selectionEnd();
    QString lines;
    lines.reserve(end - start);
    const QTextBlock first = cursor.document()->findBlock(start);
    for (QTextBlock block = first; block.isValid() && block.position() <= end; block = block.next()) {
        if (block != first && !continuesLine(block))
            lines += u'\n';
        const int from = std::max(start - block.position(), 0);
        lines += QStringView(block.text()).mid(from, end - block.position() - from);
    }
    return lines;
}

} // namespace quorvia::viewer

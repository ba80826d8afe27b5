// The bytes of a metafile's text as Unicode, by the character set of the font. Dear for the first text of a
// charset: the C library loads its table.
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace quorvia::engine {

/// One letter of a text and how many of its bytes it took.
struct WmfLetter
{
    QString text;
    int bytes = 1;
};

/// The letters of `text` in charset `charset` (0 western, 128 Japanese, 204 Cyrillic ...). What the charset
/// does not know comes out as the replacement character.
QList<WmfLetter> wmfLetters(const QByteArray& text, int charset);

/// Fonts whose bytes name signs instead of letters.
enum class WmfSigns { None, Symbol, Wingdings, Dingbats };

/// What the bytes of a font named `face` are.
WmfSigns wmfSignsOf(const QString& face);

/// The sign that byte `code` stands for; the byte as a Latin letter where the font has none of ours.
QChar wmfSign(WmfSigns signs, uchar code);

/// The letters of `text` in a font of signs, one a byte.
QList<WmfLetter> wmfSignLetters(const QByteArray& text, WmfSigns signs);

} // namespace quorvia::engine

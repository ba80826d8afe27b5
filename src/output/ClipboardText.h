// Text printed as a picture. Costs the letters that come into the picture, never those beyond its bounds.
#pragma once

#include <QFont>
#include <QImage>
#include <QString>
#include <QStringList>

namespace quorvia::output {

/// True when `text` is worth a preview: something is left of it without the blanks at its ends. Text then
/// goes before an image that the clipboard holds as well.
bool isClipboardText(const QString& text);

/// What a printed text may become at most.
struct TextBounds
{
    int maxSide = 65535;           ///< device pixels, width and height each
    qint64 maxPixels = 64'000'000; ///< of the whole picture
    qint64 maxLetters = 2'000'000; ///< that are laid out
    /// The usual ones, lowered to what this machine takes for one picture.
    static TextBounds machine();
};

/// The lines of `text`, line ends of any kind taken off, cut to `bounds` for lines that are `lineHeight`
/// device pixels high; `cut` tells whether anything is missing.
QStringList printedLines(const QString& text, int lineHeight, const TextBounds& bounds, bool& cut);

struct PrintedText
{
    QImage image;     ///< RGB32, in device pixels; null when there was not memory enough
    bool cut = false; ///< `bounds` did not take all of the text
};

/// `text` in black on white, every line of it, tabs expanded, at the top left of a picture that is 200 twips
/// larger than the text each way. Printed in `font` for a screen with `ratio` device pixels to one of the
/// program's, so that it is as sharp as there.
PrintedText printText(const QString& text, const QFont& font, double ratio,
                      const TextBounds& bounds = TextBounds::machine());

} // namespace quorvia::output

// Puts what the program knows of itself into the pages of help: a page's source has marks in it, and each is
// replaced by HTML made of the program's own tables.
#pragma once

#include <QString>

namespace quorvia::help {

/// A page, or why there is none.
struct HelpPage
{
    QString html;
    QString error; ///< empty when all is well
};

/// `source` with its marks replaced. A mark is a word, or two with one blank between, in double braces:
/// "keys-of-window" (tables by subject), "keys-of-full-screen", "keys-of P" (the part P of otherKeys()),
/// "key C" (the first key of the command C), "types" (the types of images) and "version". One that is not
/// known, or names no command, key or part, is the error.
HelpPage filledPage(const QString& source);

} // namespace quorvia::help

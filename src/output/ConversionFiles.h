// The texts of a conversion, and what it may do to the files of the user. Every doubt leaves a file as it is.
#pragma once

#include "engine/ImageLoader.h"

#include <QString>

namespace quorvia::output {

/// "pngConversion Preview: a.jpg > png" for a source "a.jpg" and a target that ends in ".png".
QString conversionCaption(const QString& source, const QString& target);

/// The question whether the file at `target` is to be replaced.
QString overwriteQuestion(const QString& target);

/// True when a picture of `bitsPerPixel`, read from a file of this `extension` (no point, any case) and
/// written again, gives the same bytes, so that they may be copied instead.
bool writesTheSameAgain(const QString& extension, int bitsPerPixel);

/// True when both paths lead to one file, by whatever names; false when either leads nowhere.
bool isOneFile(const QString& path, const QString& other);

/// True when both are readable files with the same bytes.
bool hasSameContent(const QString& path, const QString& other);

/// Puts what the file at `target` holds into the trash, since it is about to be replaced. True when it lies
/// there, or when there is no such file; else the log has why.
bool keepReplaced(const QString& target);

/// Moves the source of a conversion to `target` into the trash, unless that is the same file, or the source
/// is no more what was read: `read` is its key from before. `pages` is the number of its pages; when there
/// are more than the one that was converted, the log tells. What is not moved stays; the log has why.
void trashSource(const engine::PageKey& read, int pages, const QString& target);

} // namespace quorvia::output

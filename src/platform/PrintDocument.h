// What goes to a printer: a document of one page that holds one picture, pixel by pixel as it was composed.
// It is written row by row: beside the picture it takes some hundred KiB, however large that is.
#pragma once

#include <QImage>
#include <QIODevice>
#include <QRect>
#include <QSize>
#include <QString>

namespace quorvia::platform {

/// Writes a PDF of one page (ISO 32000-1: 7.7.3.3 the page, 8.9.5 its picture, 7.4.4 how that is packed) to
/// `file`, which is open and empty: `picture` scaled into `target`, on paper of the size `paper`, both in
/// twips, `target` from the upper left corner. Each pixel arrives as it is, 8 bits a colour; what is
/// transparent lies on white. `title` names the document. True when all of it is written; else `why`, which
/// may be null, gets one line.
bool writePdfPage(QIODevice& file, const QSize& paper, const QImage& picture, const QRect& target,
                  const QString& title, QString* why = nullptr);

} // namespace quorvia::platform

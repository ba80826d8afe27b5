// What goes to a printer: a document of one page that holds one picture, pixel by pixel as it was composed.
// The picture is most of the memory; the document takes less than twice as much again while it is made.
#pragma once

#include <QImage>
#include <QIODevice>
#include <QRect>
#include <QSize>
#include <QString>

namespace quorvia::platform {

/// Writes a PDF of one page to `file`, which is open: `picture` scaled into `target`, on paper of the size
/// `paper`, both in twips, `target` from the upper left corner. True when all of it is written; else `why`,
/// which may be null, gets one line. A picture of the format RGB32 is not copied.
bool writePdfPage(QIODevice& file, const QSize& paper, const QImage& picture, const QRect& target,
                  const QString& title, QString* why = nullptr);

} // namespace quorvia::platform

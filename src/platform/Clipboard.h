// What the desktop's clipboard holds, read when it is asked for. Dear when another program owns it: that
// program is asked, and waited for up to some seconds when it does not answer.
#pragma once

#include <QImage>
#include <QString>

#include <functional>

namespace quorvia::platform {

/// The two questions that are asked of a clipboard, the text first; a test answers them itself.
struct ClipboardReader
{
    std::function<QString()> text; ///< as it stands there; empty when there is none
    std::function<QImage()> image; ///< with its alpha; null when there is none
};

/// The clipboard of the desktop. An owner that has died, or answers nothing, gives neither text nor image;
/// an image that takes more than `maxImageBytes` (at least a mebibyte) is none.
ClipboardReader desktopClipboard(qint64 maxImageBytes);

} // namespace quorvia::platform

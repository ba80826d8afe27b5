#include "platform/Clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImageReader>
#include <QMimeData>

#include <algorithm>
#include <limits>

namespace quorvia::platform {

namespace {

/// What the clipboard offers; null when nothing. An owner that answers nothing names no formats, and is then
/// not asked for each of them, since every question waits for some seconds.
const QMimeData* offered()
{
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    return data && !data->formats().isEmpty() ? data : nullptr;
}

QString clipboardText()
{
    const QMimeData* const data = offered();
    return data && data->hasText() ? data->text() : QString();
}

/// While it lives, the toolkit reads images of up to so many MiB.
class ImagesUpTo
{
  public:
    explicit ImagesUpTo(int mebibytes) : m_before(QImageReader::allocationLimit())
    {
        QImageReader::setAllocationLimit(mebibytes);
    }
    ~ImagesUpTo() { QImageReader::setAllocationLimit(m_before); }
    Q_DISABLE_COPY_MOVE(ImagesUpTo)

  private:
    const int m_before;
};

QImage clipboardImage(int mebibytes)
{
    const QMimeData* const data = offered();
    if (!data || !data->hasImage())
        return {};
    const ImagesUpTo limit(mebibytes);
    return qvariant_cast<QImage>(data->imageData());
}

} // namespace

ClipboardReader desktopClipboard(qint64 maxImageBytes)
{
    constexpr qint64 mebibyte = 1024 * 1024;
    const int mebibytes =
        int(std::clamp<qint64>(maxImageBytes / mebibyte, 1, std::numeric_limits<int>::max()));
    return {.text = clipboardText, .image = [mebibytes] { return clipboardImage(mebibytes); }};
}

} // namespace quorvia::platform

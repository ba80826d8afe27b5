#include "platform/Clipboard.h"

#include "platform/ReadLimit.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>

#include <algorithm>
#include <limits>
#include <memory>

namespace quorvia::platform {

namespace {

/// The clipboard of the desktop. An owner that answers nothing names no formats, and is not asked for more:
/// every question waits for some seconds.
class Desktop
{
  public:
    explicit Desktop(int mebibytes) : m_mebibytes(mebibytes) {}

    QString text();
    QImage image();

  private:
    const QMimeData* offered();

    const int m_mebibytes; ///< that an image may take
    bool m_isSilent = false;
};

QString Desktop::text()
{
    const QMimeData* const data = offered();
    return data && data->hasText() ? data->text() : QString();
}

/// Follows text(), which has found out whether anybody answers.
QImage Desktop::image()
{
    const QMimeData* const data = m_isSilent ? nullptr : offered();
    if (!data || !data->hasImage())
        return {};
    const ReadLimit limit(m_mebibytes);
    return qvariant_cast<QImage>(data->imageData());
}

/// What the clipboard offers; null when nothing.
const QMimeData* Desktop::offered()
{
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    m_isSilent = !data || data->formats().isEmpty();
    return m_isSilent ? nullptr : data;
}

} // namespace

ClipboardReader desktopClipboard(qint64 maxImageBytes)
{
    constexpr qint64 mebibyte = 1024 * 1024;
    const int mebibytes =
        int(std::clamp<qint64>(maxImageBytes / mebibyte, 1, std::numeric_limits<int>::max()));
    const auto desktop = std::make_shared<Desktop>(mebibytes);
    return {.text = [desktop] { return desktop->text(); }, .image = [desktop] { return desktop->image(); }};
}

} // namespace quorvia::platform

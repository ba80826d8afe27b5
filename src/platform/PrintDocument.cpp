#include "platform/PrintDocument.h"

#include "platform/Reason.h"

#include <QFileDevice>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>

namespace quorvia::platform {

namespace {

/// Hands on what is written, and knows whether all of it arrived. The writer of the document does not look,
/// and a file forgets that it failed.
class WatchedDevice : public QIODevice
{
  public:
    explicit WatchedDevice(QIODevice& file) : m_file(file) { open(WriteOnly | Unbuffered); }

    bool isSequential() const override { return true; }
    /// What went wrong; empty when nothing did.
    QString reason()
    {
        if (auto* const file = qobject_cast<QFileDevice*>(&m_file); file && !file->flush())
            note();
        return m_reason;
    }

  protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* bytes, qint64 count) override
    {
        const qint64 written = m_file.write(bytes, count);
        if (written != count)
            note();
        return written;
    }

  private:
    void note()
    {
        if (m_reason.isEmpty())
            m_reason = m_file.errorString().simplified();
    }

    QIODevice& m_file;
    QString m_reason;
};

} // namespace

bool writePdfPage(QIODevice& file, const QSize& paper, const QImage& picture, const QRect& target,
                  const QString& title, QString* why)
{
    constexpr int twipsPerInch = 1440;
    constexpr double twipsPerPoint = 20;
    WatchedDevice device(file);
    QPdfWriter writer(&device);
    writer.setTitle(title);
    writer.setResolution(twipsPerInch); // so that one unit of the page is a twip
    const QPageSize size(QSizeF(paper) / twipsPerPoint, QPageSize::Point, QString(), QPageSize::ExactMatch);
    if (picture.isNull() || target.isEmpty() || paper.isEmpty() ||
        !writer.setPageLayout(QPageLayout(size, QPageLayout::Portrait, QMarginsF())))
        return fail(why, QStringLiteral("there is no picture or no page"));
    QPainter painter;
    if (!painter.begin(&writer))
        return fail(why, QStringLiteral("the page cannot be begun"));
    painter.setRenderHint(QPainter::LosslessImageRendering);
    painter.drawImage(target, picture);
    const bool ended = painter.end();
    const QString reason = device.reason();
    if (!ended || !reason.isEmpty())
        return fail(why, QStringLiteral("the page cannot be written: ") + reason);
    return true;
}

} // namespace quorvia::platform

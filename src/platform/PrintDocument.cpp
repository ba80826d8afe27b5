#include "platform/PrintDocument.h"

#include "platform/Reason.h"

#include <QFileDevice>
#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>

namespace quorvia::platform {

bool writePdfPage(QIODevice& file, const QSize& paper, const QImage& picture, const QRect& target,
                  const QString& title, QString* why)
{
    constexpr int twipsPerInch = 1440;
    constexpr double twipsPerPoint = 20;
    QPdfWriter writer(&file);
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
    // The writer does not look whether its bytes arrive.
    auto* const device = qobject_cast<QFileDevice*>(&file);
    if (!ended || (device && (!device->flush() || device->error() != QFileDevice::NoError)))
        return fail(why, QStringLiteral("the page cannot be written: ") + file.errorString().simplified());
    return true;
}

} // namespace quorvia::platform

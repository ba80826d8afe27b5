#include "output/ExifPanes.h"

#include "app/mFile.h"
#include "platform/OneLine.h"

namespace quorvia::output {

namespace {

using platform::Pane;
using platform::PaneItem;
using platform::PaneItemKind;

QString dimensionText(const PhotoFacts& photo)
{
    const QSize pixels = photo.image.pixels;
    return QStringLiteral("Photo: %1x%2 %3bpp\nFile Size: %4 (%5 bytes)\nUnique Colors: %6")
        .arg(QString::number(pixels.width()), QString::number(pixels.height()),
             QString::number(photo.image.bitsPerPixel), app::FormatSize(photo.bytes, 1, true),
             app::GroupDigits(photo.bytes), photo.colors ? QString::number(*photo.colors) : QString());
}

Pane toolsPane()
{
    const QString tag = QStringLiteral("miCloseImage");
    return {
        .key = QStringLiteral("Tools"),
        .title = QStringLiteral(" Experience"),
        .items = {
            {.key = QStringLiteral("Welcome"), .text = QStringLiteral("Welcome Screen"), .tag = tag},
            {.key = QStringLiteral("Slideshow"), .text = QStringLiteral("View as Slideshow"), .tag = tag}}};
}

Pane photoPane(const PhotoFacts& photo)
{
    // The dates are the same for every file.
    return {
        .key = QStringLiteral("Information"),
        .title = QStringLiteral(" Photo Information"),
        .items = {
            {.key = QStringLiteral("File"),
             .text = platform::oneLine(photo.name),
             .kind = PaneItemKind::Header},
            {.key = QStringLiteral("Dimension"), .text = dimensionText(photo), .kind = PaneItemKind::Text},
            {.key = QStringLiteral("Date"),
             .text = QStringLiteral("Created: Jan. 14th, 2003\nModified: Jan. 14th, 2003\n"
                                    "Accessed: Jan. 14th, 2003"),
             .kind = PaneItemKind::Text}}};
}

Pane descriptionPane()
{
    return {.key = QStringLiteral("Desc"),
            .title = QStringLiteral("Description:"),
            .items = {{.key = QStringLiteral("Desci"),
                       .text = QStringLiteral("No description is available."),
                       .kind = PaneItemKind::Text},
                      {.key = QStringLiteral("DescAdd"), .text = QStringLiteral("Add/Edit Description")}}};
}

Pane exifPane()
{
    return {.key = QStringLiteral("EXIF"),
            .title = QStringLiteral("EXIF Information:"),
            .items = {{.key = QStringLiteral("EXIFI"),
                       .text = QStringLiteral("Date/Time\nAperture:\nShutter speed:\nFocal Length:\nISO:\n"
                                              "Camera Make:\nCamera Model:"),
                       .kind = PaneItemKind::Text}}};
}

} // namespace

QList<Pane> exifPanes(const std::optional<PhotoFacts>& photo)
{
    if (!photo)
        return {toolsPane()};
    return {toolsPane(), photoPane(*photo), descriptionPane(), exifPane()};
}

} // namespace quorvia::output

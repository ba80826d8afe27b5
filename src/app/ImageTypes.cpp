#include "app/ImageTypes.h"

#include <array>

namespace quorvia::app {

bool extensionStandsIn(const QString& extension, const QString& list)
{
    return list.contains(extension, Qt::CaseInsensitive);
}

QString imageFilters()
{
    static constexpr std::array rows = {
        "Windows Bitmap|*.bmp;*.dib",
        "Run-length Bitmap|*.rle",
        "Graphics Interchange Format|*.gif",
        "JPEG|*.jpg;*.jpeg;*.jif",
        "Lossless JPEG|*.ljp",
        "Tagged Image File Format|*.tif;*.tiff",
        "Windows Metafile|*.wmf",
        "Icon|*.ico",
        "PC Paintbrush|*.pcx",
        "PC Paintbrush, Pages|*.dcx",
        "Portable Bitmap|*.pbm",
        "Portable Graymap|*.pgm",
        "Portable Pixmap|*.ppm",
        "Softimage Picture|*.pic",
        "Portable Network Graphics|*.png",
        "Targa|*.tga",
        "WordPerfect Graphics|*.wpg",
    };
    QString filters = QStringLiteral("All Supported Image Types|") + QLatin1String(ImageExtensionList);
    for (const char* row : rows)
        filters += QLatin1Char('|') + QLatin1String(row);
    return filters;
}

} // namespace quorvia::app

#include "system/AssociationTable.h"

#include "platform/MimeTypes.h"

#include <array>

namespace quorvia::system {

namespace {

constexpr std::array table = {
    AssociationRow{".jpg", "Image JPEG", "image/jpeg"},
    AssociationRow{".bmp", "Image BMP", "image/bmp"},
    AssociationRow{".dcx", "Image DCX", "image/x-dcx"},
    AssociationRow{".dib", "Image DIB", "image/bmp"},
    AssociationRow{".gif", "Image GIF", "image/gif"},
    AssociationRow{".jif", "Image JIF", "image/jpeg"},
    AssociationRow{".ljp", "Image LJP", "image/jpeg"},
    AssociationRow{".pbm", "Image PBM", "image/x-portable-bitmap"},
    AssociationRow{".pcx", "Image PCX", "image/vnd.zbrush.pcx"},
    AssociationRow{".pgm", "Image PGM", "image/x-portable-graymap"},
    AssociationRow{".pic", "Image PIC", "image/x-softimage-pic"},
    AssociationRow{".png", "Image PNG", "image/png"},
    AssociationRow{".ppm", "Image PPM", "image/x-portable-pixmap"},
    AssociationRow{".rle", "Image RLE", "image/rle"},
    AssociationRow{".tga", "Image TGA", "image/x-tga"},
    AssociationRow{".tif", "Image TIFF", "image/tiff"},
    AssociationRow{".wmf", "Image WMF", "image/wmf"},
    AssociationRow{".wpg", "Image WPG", "application/x-wpg"},
    AssociationRow{".jpeg", "Image JPEG", "image/jpeg"},
    AssociationRow{".tiff", "Image TIFF", "image/tiff"},
};

} // namespace

std::span<const AssociationRow> associationTable()
{
    return table;
}

QStringList extensionsOfOwners()
{
    QStringList extensions;
    for (const AssociationRow& row : table)
        extensions.append(QLatin1String(row.extension));
    // The one difference between the two orders.
    extensions.move(extensions.indexOf(QStringLiteral(".gif")), 1);
    return extensions;
}

QString associatedType(const QString& extension)
{
    return typesEverAssociated(extension).value(0);
}

QStringList typesEverAssociated(const QString& extension)
{
    QStringList types;
    if (const QString known = platform::mimeTypeOf(extension); !known.isEmpty())
        types.append(known);
    for (const AssociationRow& row : table) {
        if (extension.compare(QLatin1String(row.extension), Qt::CaseInsensitive) == 0)
            types.append(QLatin1String(row.mimeType));
    }
    types.removeDuplicates();
    return types;
}

} // namespace quorvia::system

#include "engine/codecs/utah/UtahLayout.h"

#include <QtEndian>

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr qint64 fixedBytes = 15;
constexpr int clearFirstFlag = 1;
constexpr int noBackgroundFlag = 2;
constexpr int alphaFlag = 4;
constexpr int commentFlag = 8;
constexpr int mapEntries = 256;

Error brokenHeader()
{
    return Error{ErrorKind::Damaged, QStringLiteral("the header of the Utah file is incomplete")};
}

/// One channel of the colour map: 16-bit entries whose upper half counts. Values past its end stay.
std::array<uchar, mapEntries> mapOf(const QByteArray& stored)
{
    std::array<uchar, mapEntries> map = {};
    for (int i = 0; i < mapEntries; ++i)
        map[size_t(i)] = 2 * i + 1 < stored.size() ? uchar(stored[2 * i + 1]) : uchar(i);
    return map;
}

} // namespace

QImage::Format UtahLayout::format() const
{
    if (hasAlpha)
        return QImage::Format_ARGB32;
    if (channels == 3)
        return QImage::Format_RGB32;
    return isIndexed() ? QImage::Format_Indexed8 : QImage::Format_Grayscale8;
}

QList<QRgb> UtahLayout::palette() const
{
    QList<QRgb> colors;
    for (size_t i = 0; isIndexed() && i < mapEntries; ++i)
        colors.append(qRgb(map[0][i], map[1][i], map[2][i]));
    return colors;
}

bool isUtah(const QByteArray& head)
{
    return head.size() >= 2 && head[0] == '\x52' && head[1] == '\xCC';
}

Result<UtahLayout> readUtahLayout(const ByteSource& source)
{
    const QByteArray head = source.bytes(0, fixedBytes);
    if (head.size() < fixedBytes || !isUtah(head))
        return brokenHeader();
    const auto* bytes = reinterpret_cast<const uchar*>(head.constData());
    UtahLayout layout;
    layout.size = QSize(qFromLittleEndian<quint16>(bytes + 6), qFromLittleEndian<quint16>(bytes + 8));
    const int flags = bytes[10];
    layout.channels = bytes[11];
    layout.hasAlpha = (flags & alphaFlag) != 0;
    const int maps = bytes[13];
    const int mapBits = bytes[14];
    if ((layout.channels != 1 && layout.channels != 3) || bytes[12] != 8)
        return Error{
            ErrorKind::Unsupported,
            QStringLiteral("a Utah file of %1 channels of %2 bits").arg(layout.channels).arg(bytes[12])};
    if ((maps != 0 && maps != 1 && maps != 3) || mapBits > 16)
        return Error{ErrorKind::Unsupported,
                     QStringLiteral("a Utah colour map of %1 x 2^%2").arg(maps).arg(mapBits)};
    qint64 offset = fixedBytes;
    if (flags & noBackgroundFlag) {
        offset += 1;
    } else {
        const QByteArray background = source.bytes(offset, layout.channels);
        if (background.size() < layout.channels)
            return brokenHeader();
        for (int i = 0; i < 3 && flags & clearFirstFlag; ++i)
            layout.background[size_t(i)] = uchar(background[std::min(i, layout.channels - 1)]);
        offset += layout.channels / 2 * 2 + 1; // filled up so that what follows begins at an even offset
    }
    const qint64 mapBytes = (qint64(1) << mapBits) * 2;
    for (int i = 0; i < maps; ++i, offset += mapBytes) {
        const QByteArray stored = source.bytes(offset, std::min<qint64>(mapBytes, 2 * mapEntries));
        if (stored.size() < std::min<qint64>(mapBytes, 2 * mapEntries))
            return brokenHeader();
        layout.map.push_back(mapOf(stored));
    }
    if (flags & commentFlag) {
        const QByteArray length = source.bytes(offset, 2);
        if (length.size() < 2)
            return brokenHeader();
        const int count = qFromLittleEndian<quint16>(length.constData());
        offset += 2 + count + count % 2;
    }
    layout.codesOffset = offset;
    return layout;
}

} // namespace quorvia::engine

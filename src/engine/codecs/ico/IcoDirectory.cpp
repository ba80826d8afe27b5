#include "engine/codecs/ico/IcoDirectory.h"

#include "engine/codecs/bmp/BmpLayout.h"
#include "engine/codecs/CodecErrors.h"
#include "engine/Limits.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace quorvia::engine {

namespace {

constexpr qint64 headerBytes = 6;
constexpr qint64 slotBytes = 16;
constexpr int iconType = 1;
constexpr int cursorType = 2;

int word(const QByteArray& bytes, qsizetype at)
{
    return qFromLittleEndian<quint16>(bytes.constData() + at);
}

quint32 longWord(const QByteArray& bytes, qsizetype at)
{
    return qFromLittleEndian<quint32>(bytes.constData() + at);
}

/// What the directory tells of an entry's bitmap.
struct Slot
{
    int height;    ///< pixels
    qint64 length; ///< bytes
};

/// What every icon of a sound writer tells.
bool isSound(const QByteArray& head, qsizetype at, int count)
{
    constexpr std::array<int, 9> depths = {0, 1, 2, 4, 8, 15, 16, 24, 32};
    const auto reserved = uchar(head[at + 3]);
    const int planes = word(head, at + 4);
    const int bits = word(head, at + 6);
    return (reserved == 0 || reserved == 255) && planes <= 4 &&
           std::find(depths.begin(), depths.end(), bits) != depths.end() && longWord(head, at + 8) > 0 &&
           longWord(head, at + 12) >= headerBytes + slotBytes * count;
}

/// True when there may be an entry at all: its own header decides about the rest.
bool isPlausible(const QByteArray& head, qsizetype at)
{
    return longWord(head, at + 12) >= headerBytes + slotBytes;
}

/// Depth of a PNG from the bit depth and the colour type in its header.
int pngBits(int depth, int colorType)
{
    constexpr std::array<int, 7> channels = {1, 0, 3, 1, 2, 0, 4};
    return depth * channels[size_t(std::clamp(colorType, 0, 6))];
}

Result<IcoEntry> readPngEntry(const QByteArray& head, IcoEntry entry)
{
    constexpr qsizetype headerEnd = 26;
    if (head.size() < headerEnd)
        return Error{ErrorKind::Damaged, QStringLiteral("an entry is cut short")};
    const auto side = [&](qsizetype at) {
        return int(std::min<quint32>(qFromBigEndian<quint32>(head.constData() + at), 0x7FFFFFFF));
    };
    entry.png = true;
    entry.size = QSize(side(16), side(20));
    entry.bitsPerPixel = pngBits(head[24], head[25]);
    const Status allowed = checkSize(entry.size);
    if (!allowed)
        return allowed.error();
    return entry;
}

/// The rows of the mask count in the header's height; some writers leave both out. Nearly all have a mask:
/// only a height that the slot tells too, with room for that many rows of colours, means that there is none,
/// and never where it makes two squares.
bool isMasked(const BmpLayout& layout, const Slot& slot, qint64 fileLength)
{
    const qint64 height = layout.size.height();
    if (height != slot.height || height == 2 * qint64(layout.size.width()))
        return true;
    const qint64 maskRow = (qint64(layout.size.width()) + 31) / 32 * 4;
    const qint64 withMask = layout.pixelOffset + height / 2 * (layout.rowBytes() + maskRow);
    // A told length that is too short is common: then the file's end counts.
    const qint64 length = slot.length >= withMask ? slot.length : fileLength;
    return length < layout.pixelOffset + height * layout.rowBytes();
}

Result<IcoEntry> readBitmapEntry(const QByteArray& head, const Slot& slot, qint64 length, IcoEntry entry)
{
    if (!isIconDib(head))
        return Error{ErrorKind::Damaged, QStringLiteral("an entry has no header")};
    const Result<BmpLayout> layout = readBmpLayout(head, length);
    if (!layout)
        return layout.error();
    if (layout->packing != BmpPacking::Rows)
        return Error{ErrorKind::Unsupported, QStringLiteral("a compressed bitmap in an icon")};
    entry.masked = isMasked(*layout, slot, length);
    entry.size = layout->size;
    if (entry.masked)
        entry.size.setHeight(layout->size.height() / 2);
    entry.bitsPerPixel = layout->bitsPerPixel;
    const Status allowed = checkSize(entry.size);
    if (!allowed)
        return allowed.error();
    if (layout->pixelLength < layout->usedRowBytes())
        return nothingToShowError();
    return entry;
}

Result<IcoEntry> readEntry(const ByteSource& source, const QByteArray& bytes)
{
    IcoEntry entry;
    entry.offset = longWord(bytes, 12);
    const qint64 length = source.size() - entry.offset;
    const QByteArray head = source.bytes(entry.offset, bmpHeadLength);
    const Slot slot = {bytes[1] == 0 ? 256 : uchar(bytes[1]), longWord(bytes, 8)};
    if (head.startsWith("\x89PNG\r\n\x1A\n"))
        return readPngEntry(head, entry);
    return readBitmapEntry(head, slot, length, entry);
}

} // namespace

bool isIco(const QByteArray& head, bool named)
{
    if (head.size() < headerBytes + slotBytes || word(head, 0) != 0)
        return false;
    const int type = word(head, 2);
    const int count = word(head, 4);
    if ((type != iconType && !(type == cursorType && named)) || count < 1)
        return false;
    bool sound = true;
    bool plausible = false;
    for (qint64 i = 0; i < count; ++i) {
        const qint64 at = headerBytes + i * slotBytes;
        if (at + slotBytes > head.size())
            break;
        sound = sound && isSound(head, at, count);
        plausible = plausible || isPlausible(head, at);
    }
    return named ? plausible : sound;
}

Result<std::vector<IcoEntry>> readIcoDirectory(const ByteSource& source)
{
    constexpr int mostEntries = 1024;
    const QByteArray header = source.bytes(0, headerBytes);
    const int count = header.size() < headerBytes ? 0 : std::min(word(header, 4), mostEntries);
    std::vector<IcoEntry> entries;
    Error reason = {ErrorKind::Damaged, QStringLiteral("the directory holds no icon")};
    for (qint64 i = 0; i < count; ++i) {
        const QByteArray slot = source.bytes(headerBytes + i * slotBytes, slotBytes);
        if (slot.size() < slotBytes)
            break;
        const Result<IcoEntry> entry = readEntry(source, slot);
        if (entry)
            entries.push_back(*entry);
        else if (reason.kind == ErrorKind::Damaged)
            reason = entry.error();
    }
    if (entries.empty())
        return reason;
    const auto area = [](const IcoEntry& entry) { return qint64(entry.size.width()) * entry.size.height(); };
    std::stable_sort(entries.begin(), entries.end(), [&](const IcoEntry& a, const IcoEntry& b) {
        return area(a) != area(b) ? area(a) > area(b) : a.bitsPerPixel > b.bitsPerPixel;
    });
    return entries;
}

} // namespace quorvia::engine

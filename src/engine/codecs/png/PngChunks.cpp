#include "engine/codecs/png/PngChunks.h"

#include <QtEndian>

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr char headerStart[] = "\x89PNG\r\n\x1a\n\0\0\0\x0dIHDR";

bool depthFits(int colors, int depth)
{
    switch (colors) {
    case 0:
        return depth == 1 || depth == 2 || depth == 4 || depth == 8 || depth == 16;
    case 3:
        return depth == 1 || depth == 2 || depth == 4 || depth == 8;
    case 2:
    case 4:
    case 6:
        return depth == 8 || depth == 16;
    default:
        return false;
    }
}

bool isLetter(uchar byte)
{
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z');
}

} // namespace

int PngHeader::channels() const
{
    switch (colors) {
    case 2:
        return 3;
    case 4:
        return 2;
    case 6:
        return 4;
    default:
        return 1;
    }
}

Result<PngHeader> readPngHeader(const ByteSource& source)
{
    uchar bytes[pngHeaderLength];
    constexpr qint64 startLength = sizeof headerStart - 1;
    if (source.read(0, bytes, sizeof bytes) < qint64(sizeof bytes) ||
        !std::equal(bytes, bytes + startLength, reinterpret_cast<const uchar*>(headerStart)))
        return Error{ErrorKind::Damaged, QStringLiteral("no header chunk")};
    const quint32 width = qFromBigEndian<quint32>(bytes + 16);
    const quint32 height = qFromBigEndian<quint32>(bytes + 20);
    const int depth = bytes[24];
    const int colors = bytes[25];
    const int interlace = bytes[28];
    constexpr quint32 maxSide = 0x7fffffff;
    if (width > maxSide || height > maxSide || !depthFits(colors, depth) || bytes[26] != 0 ||
        bytes[27] != 0 || interlace > 1)
        return Error{ErrorKind::Damaged, QStringLiteral("a header chunk that breaks the rules")};
    return PngHeader{QSize(static_cast<int>(width), static_cast<int>(height)), depth, colors, interlace == 1};
}

std::optional<PngChunk> PngChunks::next()
{
    uchar bytes[8];
    if (m_source.read(m_offset, bytes, sizeof bytes) < qint64(sizeof bytes) ||
        !std::all_of(bytes + 4, bytes + 8, isLetter))
        return {};
    const PngChunk chunk{qFromBigEndian<quint32>(bytes + 4), m_offset, qFromBigEndian<quint32>(bytes)};
    m_offset = chunk.behind();
    return chunk;
}

} // namespace quorvia::engine

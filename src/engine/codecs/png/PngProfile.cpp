#include "engine/codecs/png/PngProfile.h"

#include "engine/codecs/ZlibStream.h"
#include "engine/ColorConversion.h"

#include <QtEndian>

#include <isa-l/crc.h>

namespace quorvia::engine {

namespace {

constexpr int maxChunks = 1000; // that are looked at; files have some ten before the pixels

/// What the zlib stream `packed` holds; empty when it is broken or holds more than maxProfileBytes.
QByteArray inflated(const QByteArray& packed)
{
    QByteArray profile(maxProfileBytes, Qt::Uninitialized);
    ZlibStream stream(reinterpret_cast<const uchar*>(packed.constData()), packed.size());
    const std::optional<qint64> length =
        stream.read(reinterpret_cast<uchar*>(profile.data()), profile.size());
    if (!length || !stream.isAtEnd())
        return {};
    profile.truncate(*length);
    profile.squeeze();
    return profile;
}

/// The profile in the content of its chunk: a name of 1 to 79 bytes, a zero, the method 0, a zlib stream.
QByteArray profileOf(const QByteArray& content)
{
    constexpr qsizetype longestName = 79;
    const qsizetype name = content.left(longestName + 1).indexOf('\0');
    if (name < 1 || content.size() < name + 2 || content[name + 1] != 0)
        return {};
    return inflated(content.mid(name + 2));
}

QByteArray contentOf(const ByteSource& source, const PngChunk& chunk)
{
    if (chunk.length > maxProfileBytes || chunk.behind() > source.size())
        return {};
    constexpr qint64 typeLength = 4;
    const QByteArray bytes = source.bytes(chunk.offset + 4, typeLength + chunk.length + 4);
    const qsizetype summed = bytes.size() - 4;
    if (summed < typeLength ||
        crc32_gzip_refl(0, reinterpret_cast<const uchar*>(bytes.constData()), quint64(summed)) !=
            qFromBigEndian<quint32>(bytes.constData() + summed))
        return {};
    return bytes.mid(typeLength, chunk.length);
}

} // namespace

QByteArray readPngProfile(const ByteSource& source, const PngHeader& header)
{
    constexpr int colorBit = 2;
    const ColorModel wanted = header.colors & colorBit ? ColorModel::Rgb : ColorModel::Gray;
    PngChunks chunks(source);
    QByteArray profile;
    for (int count = 0; count < maxChunks; ++count) {
        const std::optional<PngChunk> chunk = chunks.next();
        if (!chunk || chunk->type == PngChunk::data || chunk->type == PngChunk::end)
            break;
        if (chunk->type == PngChunk::srgb)
            return {};
        if (chunk->type == PngChunk::profile && profile.isEmpty())
            profile = profileOf(contentOf(source, *chunk));
    }
    return colorModelOf(profile) == wanted ? profile : QByteArray();
}

QByteArray pngProfileContent(const QByteArray& profile)
{
    constexpr int best = 9;
    constexpr qsizetype ownLength = 4; // Qt puts the length in front
    return QByteArray("ICC profile\0\0", 13) + qCompress(profile, best).mid(ownLength);
}

} // namespace quorvia::engine

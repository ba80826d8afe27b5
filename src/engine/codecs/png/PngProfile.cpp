#include "engine/codecs/png/PngProfile.h"

#include "engine/ColorConversion.h"

#include <QtEndian>

#include <libdeflate.h>

#include <memory>

namespace quorvia::engine {

namespace {

constexpr int maxChunks = 1000; // that are looked at; files have some ten before the pixels

struct FreeInflater
{
    void operator()(libdeflate_decompressor* inflater) const { libdeflate_free_decompressor(inflater); }
};

/// What the zlib stream `packed` holds; empty when it is broken or holds more than maxProfileBytes.
QByteArray inflated(const QByteArray& packed)
{
    const std::unique_ptr<libdeflate_decompressor, FreeInflater> inflater(libdeflate_alloc_decompressor());
    if (!inflater)
        return {};
    QByteArray profile(maxProfileBytes, Qt::Uninitialized);
    size_t length = 0;
    const auto result = libdeflate_zlib_decompress(inflater.get(), packed.constData(), size_t(packed.size()),
                                                   profile.data(), size_t(profile.size()), &length);
    if (result != LIBDEFLATE_SUCCESS)
        return {};
    profile.truncate(qsizetype(length));
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
    if (summed < typeLength || libdeflate_crc32(0, bytes.constData(), size_t(summed)) !=
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

#include "engine/codecs/PngData.h"

#include "engine/LargePages.h"

#include <QtEndian>

#include <libdeflate.h>

#include <algorithm>
#include <vector>

namespace quorvia::engine {

namespace {

constexpr int paletteType = 3;
constexpr int maxChunks = 1'000'000;
constexpr qint64 sumLength = 4;

/// The check sum of a chunk that begins with the name of its type.
quint32 checkSum(quint32 type, const void* content, qint64 length)
{
    uchar name[4];
    qToBigEndian(type, name);
    return libdeflate_crc32(libdeflate_crc32(0, name, sizeof name), content, size_t(length));
}

/// One file under way.
class Gathering
{
  public:
    Gathering(const ByteSource& source, const PngHeader& header, const PngDataBounds& bounds,
              const CancelFlag& cancel)
        : m_source(source), m_header(header), m_bounds(bounds), m_cancel(cancel)
    {
    }
    std::optional<PngData> gather();

  private:
    bool isHeaderWhole() const;
    bool sortChunks();
    bool take(const PngChunk& chunk);
    bool readSmall(const PngChunk& chunk, QByteArray& content) const;
    bool isTransparencyFit() const;
    bool readStream();

    const ByteSource& m_source;
    const PngHeader& m_header;
    const PngDataBounds m_bounds;
    const CancelFlag& m_cancel;
    PngData m_data;
    std::vector<PngChunk> m_pieces; ///< the data chunks
    bool m_ended = false;
};

bool Gathering::isHeaderWhole() const
{
    uchar bytes[pngHeaderLength];
    constexpr int typeAt = 12;
    constexpr int sumAt = pngHeaderLength - sumLength;
    return m_source.read(0, bytes, sizeof bytes) == qint64(sizeof bytes) &&
           libdeflate_crc32(0, bytes + typeAt, sumAt - typeAt) == qFromBigEndian<quint32>(bytes + sumAt);
}

/// The content of a palette or transparency chunk; false when one was there before, it stands behind pixels
/// or its check sum is wrong.
bool Gathering::readSmall(const PngChunk& chunk, QByteArray& content) const
{
    constexpr qint64 longest = 3 * 256;
    if (!m_pieces.empty() || !content.isEmpty() || chunk.length < 1 || chunk.length > longest)
        return false;
    const QByteArray bytes = m_source.bytes(chunk.offset + 8, chunk.length + sumLength);
    if (bytes.size() != chunk.length + sumLength)
        return false;
    content = bytes.left(chunk.length);
    return checkSum(chunk.type, content.constData(), content.size()) ==
           qFromBigEndian<quint32>(bytes.constData() + chunk.length);
}

bool Gathering::isTransparencyFit() const
{
    const qsizetype length = m_data.transparency.size();
    if (m_header.colors == paletteType)
        return length <= m_data.palette.size() / 3;
    return length == 2 * m_header.channels();
}

/// Takes note of one chunk; false when it is out of order.
bool Gathering::take(const PngChunk& chunk)
{
    constexpr int alphaBit = 4;
    switch (chunk.type) {
    case PngChunk::palette: {
        if (m_header.colors != paletteType)
            return true;
        const qint64 most = qint64(3) << m_header.depth;
        return chunk.length % 3 == 0 && chunk.length <= most && m_data.transparency.isEmpty() &&
               readSmall(chunk, m_data.palette);
    }
    case PngChunk::transparency:
        if (m_header.colors & alphaBit)
            return true;
        return readSmall(chunk, m_data.transparency) && isTransparencyFit();
    case PngChunk::data:
        if (!m_pieces.empty() && m_pieces.back().behind() != chunk.offset)
            return false;
        m_pieces.push_back(chunk);
        m_data.length += chunk.length;
        return m_data.length <= m_bounds.most;
    case PngChunk::end:
        m_ended = chunk.behind() <= m_source.size();
        return m_ended;
    default:
        return true;
    }
}

bool Gathering::sortChunks()
{
    PngChunks chunks(m_source);
    for (int count = 0; count < maxChunks && !m_ended; ++count) {
        const std::optional<PngChunk> chunk = chunks.next();
        if (!chunk || m_cancel.load(std::memory_order_relaxed) || !take(*chunk))
            return false;
    }
    return m_ended && !m_pieces.empty() && m_data.length >= m_bounds.least &&
           (m_header.colors != paletteType || !m_data.palette.isEmpty());
}

/// Reads the data chunks one behind the other. Each is read with its check sum, which the next one
/// overwrites.
bool Gathering::readStream()
{
    m_data.stream.reset(static_cast<uchar*>(std::malloc(size_t(m_data.length + sumLength))));
    if (!m_data.stream)
        return false;
    preferLargePages(m_data.stream.get(), m_data.length);
    uchar* to = m_data.stream.get();
    for (const PngChunk& piece : m_pieces) {
        constexpr qint64 block = 64 * 1024; // between two looks at `cancel`
        for (qint64 at = 0; at < piece.length + sumLength; at += block) {
            const qint64 count = std::min(block, piece.length + sumLength - at);
            if (m_cancel.load(std::memory_order_relaxed) ||
                m_source.read(piece.offset + 8 + at, to + at, count) != count)
                return false;
        }
        if (checkSum(piece.type, to, piece.length) != qFromBigEndian<quint32>(to + piece.length))
            return false;
        to += piece.length;
    }
    return true;
}

std::optional<PngData> Gathering::gather()
{
    if (!isHeaderWhole() || !sortChunks() || !readStream())
        return {};
    return std::move(m_data);
}

} // namespace

std::optional<PngData> readPngData(const ByteSource& source, const PngHeader& header,
                                   const PngDataBounds& bounds, const CancelFlag& cancel)
{
    return Gathering(source, header, bounds, cancel).gather();
}

} // namespace quorvia::engine

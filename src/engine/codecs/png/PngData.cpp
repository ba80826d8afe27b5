#include "engine/codecs/png/PngData.h"

#include "engine/LargePages.h"

#include <QtEndian>

#include <isa-l/crc.h>

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr int paletteType = 3;
constexpr int maxChunks = 1'000'000;
constexpr qint64 sumLength = 4;

/// The check sum of a chunk that begins with the name of its type.
quint32 checkSum(quint32 type, const uchar* content, qint64 length)
{
    uchar name[4];
    qToBigEndian(type, name);
    return crc32_gzip_refl(crc32_gzip_refl(0, name, sizeof name), content, quint64(length));
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
    bool readChunks();
    bool take(const PngChunk& chunk);
    bool readSmall(const PngChunk& chunk, QByteArray& content) const;
    bool isTransparencyFit() const;
    bool allocateStream(qint64 from);
    bool readStream(const PngChunk& chunk);

    const ByteSource& m_source;
    const PngHeader& m_header;
    const PngDataBounds m_bounds;
    const CancelFlag& m_cancel;
    PngData m_data;
    qint64 m_room = 0;  ///< for the stream
    qint64 m_after = 0; ///< offset behind the last data chunk
    bool m_ended = false;
};

bool Gathering::isHeaderWhole() const
{
    uchar bytes[pngHeaderLength];
    constexpr int typeAt = 12;
    constexpr int sumAt = pngHeaderLength - sumLength;
    return m_source.read(0, bytes, sizeof bytes) == qint64(sizeof bytes) &&
           crc32_gzip_refl(0, bytes + typeAt, sumAt - typeAt) == qFromBigEndian<quint32>(bytes + sumAt);
}

/// The content of a palette or transparency chunk; false when one was there before, it stands behind pixels
/// or its check sum is wrong.
bool Gathering::readSmall(const PngChunk& chunk, QByteArray& content) const
{
    constexpr qint64 longest = 3 * 256;
    if (m_data.stream || !content.isEmpty() || chunk.length < 1 || chunk.length > longest)
        return false;
    const QByteArray bytes = m_source.bytes(chunk.offset + 8, chunk.length + sumLength);
    if (bytes.size() != chunk.length + sumLength)
        return false;
    content = bytes.left(chunk.length);
    return checkSum(chunk.type, reinterpret_cast<const uchar*>(content.constData()), content.size()) ==
           qFromBigEndian<quint32>(bytes.constData() + chunk.length);
}

bool Gathering::isTransparencyFit() const
{
    const QByteArray& bytes = m_data.transparency;
    if (m_header.colors == paletteType)
        return bytes.size() <= m_data.palette.size() / 3;
    if (bytes.size() != 2 * m_header.channels())
        return false;
    for (int i = 0; i < m_header.channels(); ++i) {
        if (qFromBigEndian<quint16>(bytes.constData() + 2 * i) >> m_header.depth != 0)
            return false;
    }
    return true;
}

/// Room for all data chunks, the first of which stands at offset `from`. What is not read is never touched.
bool Gathering::allocateStream(qint64 from)
{
    if (m_bounds.most <= 0)
        return false;
    m_room = std::min(m_source.size() - from, m_bounds.most) + sumLength;
    m_data.stream.reset(static_cast<uchar*>(std::malloc(size_t(m_room))));
    preferLargePages(m_data.stream.get(), m_room);
    m_after = from;
    return m_data.stream != nullptr;
}

/// Adds a data chunk. It is read with its check sum, which the next one overwrites.
bool Gathering::readStream(const PngChunk& chunk)
{
    constexpr qint64 block = 64 * 1024; // between two looks at `cancel`
    if (!m_data.stream && !allocateStream(chunk.offset))
        return false;
    const qint64 length = chunk.length + sumLength;
    if (chunk.offset != m_after || length > m_room - m_data.length)
        return false;
    uchar* const to = m_data.stream.get() + m_data.length;
    for (qint64 at = 0; at < length; at += block) {
        const qint64 count = std::min(block, length - at);
        if (m_cancel.load(std::memory_order_relaxed) ||
            m_source.read(chunk.offset + 8 + at, to + at, count) != count)
            return false;
    }
    m_data.length += chunk.length;
    m_after = chunk.behind();
    return checkSum(chunk.type, to, chunk.length) == qFromBigEndian<quint32>(to + chunk.length);
}

/// Takes one chunk in; false when it is out of order.
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
        if (m_header.colors == paletteType && m_data.palette.isEmpty())
            return false;
        return readStream(chunk);
    case PngChunk::end:
        m_ended = chunk.behind() <= m_source.size();
        return m_ended;
    default:
        return true;
    }
}

bool Gathering::readChunks()
{
    PngChunks chunks(m_source);
    for (int count = 0; count < maxChunks && !m_ended; ++count) {
        const std::optional<PngChunk> chunk = chunks.next();
        if (!chunk || m_cancel.load(std::memory_order_relaxed) || !take(*chunk))
            return false;
    }
    return m_ended && m_data.stream && m_data.length >= m_bounds.least;
}

std::optional<PngData> Gathering::gather()
{
    if (!isHeaderWhole() || !readChunks())
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

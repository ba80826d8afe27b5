#include "engine/codecs/tiff/TiffStriles.h"

#include "engine/Limits.h"

#include <algorithm>
#include <cstring>

namespace quorvia::engine {

namespace {

uchar reversed(uchar bits)
{
    uchar result = 0;
    for (int i = 0; i < 8; ++i)
        result = uchar(result << 1 | (bits >> i & 1));
    return result;
}

/// True when the header of JBIG data asks for no more than `strile`: its decoder allocates whatever the
/// header says. Source: ITU-T T.82, section 6.2: planes in byte 2, width and height from bytes 4 and 8.
bool isModestJbig(const QByteArray& stored, bool reverse, QSize strile)
{
    constexpr int headerBytes = 20;
    if (stored.size() < headerBytes)
        return false;
    const auto byteAt = [&](int at) { return reverse ? reversed(uchar(stored[at])) : uchar(stored[at]); };
    const auto numberAt = [&](int at) {
        return quint32(byteAt(at)) << 24 | quint32(byteAt(at + 1)) << 16 | quint32(byteAt(at + 2)) << 8 |
               quint32(byteAt(at + 3));
    };
    return byteAt(2) == 1 && numberAt(4) <= quint32(strile.width()) &&
           numberAt(8) <= quint32(strile.height());
}

template <class T>
T field(TIFF* tiff, quint32 tag)
{
    T value = 0;
    TIFFGetFieldDefaulted(tiff, tag, &value);
    return value;
}

} // namespace

TiffStriles::TiffStriles(TiffHandle& handle, std::shared_ptr<ByteSource> source, const TiffLayout& layout)
    : m_handle(handle), m_source(std::move(source)), m_layout(layout)
{
    const auto told = layout.tiled ? TIFFTileRowSize64(handle.get()) : TIFFScanlineSize64(handle.get());
    const quint64 samples = quint64(layout.strile.width()) * quint64(layout.planar ? 1 : layout.samples);
    const quint64 needed = (samples * quint64(layout.bits) + 7) / 8;
    m_isJbig = field<uint16_t>(handle.get(), TIFFTAG_COMPRESSION) == COMPRESSION_JBIG;
    // libtiff turns JBIG's bits round when the tag says what is usual elsewhere.
    m_isReversed = field<uint16_t>(handle.get(), TIFFTAG_FILLORDER) == FILLORDER_MSB2LSB;
    if (layout.colors == TiffColors::YCbCr) { // a block: its Y by rows, then Cb and Cr
        const qint64 across = (layout.strile.width() + layout.block.width() - 1) / layout.block.width();
        m_rowBytes = across * (layout.block.width() * layout.block.height() + 2);
        return;
    }
    if (told >= needed && told <= quint64(Limits::machine().maxBytes))
        m_rowBytes = qint64(told);
}

/// Compressed bytes are seldom more than the rows; a count far beyond would only cost time.
qint64 TiffStriles::mostStoredBytes(int rows) const
{
    const qint64 sensible = m_rowBytes * rows * 10 + 65536;
    return m_layout.compressed ? sensible : m_rowBytes * rows;
}

qint64 TiffStriles::memoryFor(int rows, int planes) const
{
    return m_rowBytes * rows * planes + std::min(mostStoredBytes(rows), m_source->size());
}

TiffBuffer TiffStriles::allocate(int rows) const
{
    return TiffBuffer(static_cast<uchar*>(std::malloc(size_t(m_rowBytes) * size_t(rows))));
}

bool TiffStriles::tryRows(quint32 index, QByteArray& stored, int rows, uchar* out)
{
    return TIFFReadFromUserBuffer(m_handle.get(), index, stored.data(), tmsize_t(stored.size()), out,
                                  tmsize_t(m_rowBytes * rows)) != 0;
}

/// How many of `rows` rows stand in front of the break that decoding all of them met, with those rows in
/// `out`. A decoder that fails leaves its rows half done, so that they are looked for by halving. Each try
/// may cost as much as the whole page: there are so many that the break is known to a part in 256.
int TiffStriles::rowsBeforeBreak(quint32 index, QByteArray& stored, int rows, uchar* out,
                                 const CancelFlag& cancel)
{
    constexpr int mostTries = 8;
    int good = 0;
    int bad = rows;
    bool done = true; // the rows in `out` are the good ones
    for (int tries = 0; tries < mostTries && bad - good > 1; ++tries) {
        if (cancel)
            return 0;
        const int middle = good + (bad - good) / 2;
        done = tryRows(index, stored, middle, out);
        (done ? good : bad) = middle;
    }
    if (cancel || good == 0)
        return 0;
    return done || tryRows(index, stored, good, out) ? good : 0;
}

StrileOutcome TiffStriles::decode(quint32 index, int first, int rows, uchar* out, const CancelFlag& cancel)
{
    const quint64 at = TIFFGetStrileOffset(m_handle.get(), index);
    if (at == 0 || at >= quint64(m_source->size()))
        return {};
    qint64 length = m_rowBytes * rows; // without compression the rows tell, whatever the byte count says
    const qint64 begin = qint64(at) + first * m_rowBytes;
    if (m_layout.compressed)
        length = qint64(
            std::min<quint64>(TIFFGetStrileByteCount(m_handle.get(), index), quint64(mostStoredBytes(rows))));
    QByteArray stored = m_source->bytes(begin, length);
    if (stored.isEmpty() || (m_isJbig && !isModestJbig(stored, m_isReversed, m_layout.strile)))
        return {};
    if (!m_layout.compressed) {
        const int there = int(stored.size() / m_rowBytes);
        const int good = there > 0 && tryRows(index, stored, there, out) ? there : 0;
        return {good, good == rows};
    }
    std::memset(out, 0, size_t(m_rowBytes * rows)); // fax decoders stop early and call it a success
    const int errorsBefore = m_handle.errorCount();
    if (tryRows(index, stored, rows, out))
        return {rows, stored.size() == length && m_handle.errorCount() == errorsBefore};
    return {rowsBeforeBreak(index, stored, rows, out, cancel), false};
}

} // namespace quorvia::engine

#include "engine/codecs/TiffStriles.h"

#include "engine/Limits.h"

#include <algorithm>
#include <cstring>

namespace quorvia::engine {

TiffStriles::TiffStriles(TiffHandle& handle, std::shared_ptr<ByteSource> source, const TiffLayout& layout)
    : m_handle(handle), m_source(std::move(source)), m_layout(layout)
{
    const auto told = layout.tiled ? TIFFTileRowSize64(handle.get()) : TIFFScanlineSize64(handle.get());
    const quint64 samples = quint64(layout.strile.width()) * quint64(layout.planar ? 1 : layout.samples);
    const quint64 needed = (samples * quint64(layout.bits) + 7) / 8;
    if (told >= needed && told <= quint64(Limits::machine().maxBytes))
        m_rowBytes = qint64(told);
}

TiffBuffer TiffStriles::allocate(int rows) const
{
    if (m_rowBytes > Limits::machine().maxBytes / std::max(rows, 1))
        return {};
    return TiffBuffer(static_cast<uchar*>(std::malloc(size_t(m_rowBytes) * size_t(rows))));
}

bool TiffStriles::tryRows(quint32 index, QByteArray& stored, int rows, uchar* out)
{
    return TIFFReadFromUserBuffer(m_handle.get(), index, stored.data(), tmsize_t(stored.size()), out,
                                  tmsize_t(m_rowBytes * rows)) != 0;
}

StrileOutcome TiffStriles::decode(quint32 index, int first, int rows, uchar* out)
{
    const quint64 at = TIFFGetStrileOffset(m_handle.get(), index);
    if (at == 0 || at >= quint64(m_source->size()))
        return {};
    qint64 length = m_rowBytes * rows; // without compression the rows tell, whatever the byte count says
    const qint64 begin = qint64(at) + first * m_rowBytes;
    if (m_layout.compressed) {
        // Compressed bytes are seldom more than the rows; a count far beyond would only cost time.
        const qint64 sensible = length * 10 + 65536;
        length = qint64(std::min<quint64>(TIFFGetStrileByteCount(m_handle.get(), index), quint64(sensible)));
    }
    QByteArray stored = m_source->bytes(begin, length);
    if (stored.isEmpty())
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
    // A decoder that fails leaves its rows half done. The most rows that it can do are looked for by halving.
    int good = 0;
    int bad = rows;
    while (bad - good > 1) {
        const int middle = good + (bad - good) / 2;
        (tryRows(index, stored, middle, out) ? good : bad) = middle;
    }
    return {good > 0 && tryRows(index, stored, good, out) ? good : 0, false};
}

} // namespace quorvia::engine

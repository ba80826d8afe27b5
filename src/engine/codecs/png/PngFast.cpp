#include "engine/codecs/png/PngFast.h"

#include "engine/codecs/ImageRows.h"
#include "engine/codecs/png/PngData.h"
#include "engine/codecs/png/PngRows.h"
#include "engine/codecs/png/PngUnfilter.h"
#include "engine/codecs/ZlibStream.h"
#include "engine/LargePages.h"
#include "engine/Limits.h"

#include <QtEndian>

#include <algorithm>
#include <system_error>
#include <thread>
#include <vector>

namespace quorvia::engine {

namespace {

/// ISA-L counts what it inflates in 32 bits; this is well below.
constexpr qint64 mostRawBytes = qint64(2) << 30;
/// Starting a thread costs more than it saves below this.
constexpr qint64 worthAThread = 1 << 20;

/// Where everything lies in one block of memory: the picture from its start, the filtered rows at its end.
/// Converting a row then never writes where a row that is still needed lies, and the memory is hardly more
/// than the greater of the two.
struct Arrangement
{
    qint64 rawRow = 0;   ///< bytes of a filtered row, with its filter byte
    qint64 line = 0;     ///< bytes of a row of the picture
    qint64 rawStart = 0; ///< offset of the filtered rows
    qint64 rawBytes = 0;
    qint64 imageBytes = 0;
    qint64 blockBytes = 0;
};

Arrangement arrange(const PngHeader& header, QImage::Format format)
{
    const qint64 width = header.size.width();
    const qint64 height = header.size.height();
    Arrangement all;
    all.rawRow = 1 + (width * header.channels() * header.depth + 7) / 8;
    all.line = (width * QImage::toPixelFormat(format).bitsPerPixel() + 31) / 32 * 4;
    all.rawBytes = all.rawRow * height;
    all.imageBytes = all.line * height;
    // Row y of the picture has to end where filtered row y begins, or before: for the first row and the last.
    all.rawStart = std::max(all.line, all.imageBytes - all.rawRow * (height - 1));
    all.blockBytes = all.rawStart + all.rawBytes;
    return all;
}

/// Fewer bytes cannot hold the rows, and more are not there for them; nor is more memory taken than a picture
/// may cost.
PngDataBounds sensibleData(const Arrangement& place)
{
    constexpr qint64 bestRatio = 1032;      // of deflate
    constexpr qint64 roomForBlocks = 65536; // what cannot be packed grows a little
    const qint64 usual = place.rawBytes + place.rawBytes / 8 + roomForBlocks;
    return {place.rawBytes / bestRatio, std::min(usual, Limits::machine().maxBytes - place.blockBytes)};
}

/// The rows on their way from the compressed data to the picture: one thread inflates them, another follows
/// it, unfilters and converts.
class RowWork
{
  public:
    RowWork(const PngHeader& header, const PngRows& rows, const PngData& data, const Arrangement& place,
            uchar* block, const CancelFlag& cancel)
        : m_height(header.size.height()), m_pixelBytes(std::max(1, header.channels() * header.depth / 8)),
          m_rows(rows), m_stream(data.stream.get(), data.length), m_place(place), m_block(block),
          m_cancel(cancel), m_zeros(size_t(place.rawRow))
    {
    }

    /// False when the data are not one whole stream of just these rows, a row has no valid filter or the work
    /// was cancelled.
    bool run();

  private:
    uchar* rawAt(int y) const { return m_block + m_place.rawStart + m_place.rawRow * y; }
    bool inflate(int from, int to);
    bool finish(int from, int to) const;
    bool inflateAll();
    void finishAll();
    bool runAlone();
    int batch() const;

    static constexpr int givenUp = -1;
    const int m_height;
    const int m_pixelBytes;
    const PngRows& m_rows;
    ZlibStream m_stream;
    const Arrangement& m_place;
    uchar* const m_block;
    const CancelFlag& m_cancel;
    const std::vector<uchar> m_zeros;    ///< what stands above the first row
    std::atomic<int> m_inflated = 0;     ///< rows, or givenUp
    std::atomic<bool> m_refused = false; ///< by finishAll()
};

/// How many rows are taken at once: few enough to stay in the caches between two steps.
int RowWork::batch() const
{
    constexpr qint64 batchBytes = 256 * 1024;
    return int(std::clamp<qint64>(batchBytes / m_place.rawRow, 1, m_height));
}

bool RowWork::inflate(int from, int to)
{
    const qint64 count = m_place.rawRow * (to - from);
    return !m_cancel.load(std::memory_order_relaxed) && m_stream.read(rawAt(from), count) == count;
}

/// Unfilters the rows, then converts them; false when one has no valid filter.
bool RowWork::finish(int from, int to) const
{
    for (int y = from; y < to; ++y) {
        uchar* row = rawAt(y);
        const uchar* above = y > 0 ? rawAt(y - 1) + 1 : m_zeros.data();
        if (!unfilterPngRow(row[0], row + 1, above, m_place.rawRow - 1, m_pixelBytes))
            return false;
    }
    for (int y = from; y < to; ++y)
        m_rows.convert(rawAt(y) + 1, m_block + m_place.line * y, m_place.line);
    return true;
}

/// Inflates batch after batch and tells how far it is.
bool RowWork::inflateAll()
{
    for (int y = 0; y < m_height;) {
        const int to = std::min(y + batch(), m_height);
        const bool good = !m_refused && inflate(y, to);
        m_inflated = good ? to : givenUp;
        m_inflated.notify_one();
        if (!good)
            return false;
        y = to;
    }
    return true;
}

void RowWork::finishAll()
{
    for (int done = 0; done < m_height;) {
        m_inflated.wait(done);
        const int inflated = m_inflated;
        if (inflated == givenUp)
            return;
        const int to = std::min(inflated, done + batch());
        if (m_cancel.load(std::memory_order_relaxed) || !finish(done, to)) {
            m_refused = true;
            return;
        }
        done = to;
    }
}

bool RowWork::runAlone()
{
    for (int y = 0; y < m_height;) {
        const int to = std::min(y + batch(), m_height);
        if (!inflate(y, to) || !finish(y, to))
            return false;
        y = to;
    }
    return true;
}

bool RowWork::run()
{
    std::jthread follower;
    if (m_place.rawBytes >= worthAThread && std::thread::hardware_concurrency() > 1) {
        try {
            follower = std::jthread([this] { finishAll(); });
        } catch (const std::system_error&) {
            // no thread left on this machine: one after the other
        }
    }
    if (!follower.joinable())
        return runAlone() && m_stream.isAtEnd();
    const bool whole = inflateAll() && m_stream.isAtEnd();
    follower.join();
    return whole && !m_refused;
}

std::optional<PngClearColor> clearColorOf(const PngHeader& header, const QByteArray& transparency)
{
    constexpr int paletteType = 3;
    if (transparency.isEmpty() || header.colors == paletteType)
        return {};
    PngClearColor color = {};
    for (int i = 0; i < header.channels(); ++i)
        color[size_t(i)] = qFromBigEndian<quint16>(transparency.constData() + 2 * i);
    return color;
}

QList<QRgb> colorTable(const PngData& data, QImage::Format format)
{
    if (data.palette.isEmpty() && format == QImage::Format_Mono)
        return {qRgb(0, 0, 0), qRgb(255, 255, 255)};
    QList<QRgb> table;
    const auto* entry = reinterpret_cast<const uchar*>(data.palette.constData());
    for (qsizetype i = 0; i < data.palette.size() / 3; ++i, entry += 3) {
        const int alpha = i < data.transparency.size() ? uchar(data.transparency[i]) : 255;
        table.append(qRgba(entry[0], entry[1], entry[2], alpha));
    }
    return table;
}

/// Gives back what of `block` lies behind the picture, where that is worth a move of the block.
QImage imageOf(PngBuffer block, const Arrangement& place, QSize size, QImage::Format format)
{
    constexpr qint64 worthGivingBack = 256 * 1024;
    if (place.blockBytes - place.imageBytes >= worthGivingBack) {
        if (void* shrunk = std::realloc(block.get(), size_t(place.imageBytes))) {
            (void)block.release();
            block.reset(static_cast<uchar*>(shrunk));
        }
    }
    uchar* memory = block.release();
    return QImage(memory, size.width(), size.height(), qsizetype(place.line), format, std::free, memory);
}

} // namespace

std::optional<Picture> decodePngFast(const ByteSource& source, const PngHeader& header,
                                     const CancelFlag& cancel)
{
    const Arrangement greatest = arrange(header, QImage::Format_ARGB32);
    if (header.interlaced || greatest.rawBytes > mostRawBytes)
        return {};
    std::optional<PngData> data = readPngData(source, header, sensibleData(greatest), cancel);
    if (!data)
        return {};
    const PngRows rows(header, !data->transparency.isEmpty(), clearColorOf(header, data->transparency));
    const Arrangement place = arrange(header, rows.format());
    PngBuffer block(static_cast<uchar*>(std::malloc(size_t(place.blockBytes))));
    preferLargePages(block.get(), place.blockBytes);
    if (!block || !RowWork(header, rows, *data, place, block.get(), cancel).run())
        return {};
    data->stream.reset();
    Picture picture;
    picture.image = imageOf(std::move(block), place, header.size, rows.format());
    if (QList<QRgb> table = colorTable(*data, rows.format()); !table.isEmpty()) {
        coverUsedEntries(table, picture.image);
        picture.image.setColorTable(table);
    }
    picture.fullSize = header.size;
    picture.bitsPerPixel = header.depth * header.channels();
    return picture;
}

} // namespace quorvia::engine

#include "engine/codecs/png/PngFast.h"

#include "engine/codecs/ImageRows.h"
#include "engine/codecs/png/PngData.h"
#include "engine/codecs/png/PngRows.h"
#include "engine/codecs/png/PngUnfilter.h"
#include "engine/LargePages.h"
#include "engine/Limits.h"

#include <QtEndian>

#include <libdeflate.h>

#include <algorithm>
#include <system_error>
#include <thread>
#include <vector>

namespace quorvia::engine {

namespace {

/// Inflating this much takes about two seconds, in which a cancel is not seen.
constexpr qint64 mostRawBytes = qint64(400) << 20;
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

struct FreeInflater
{
    void operator()(libdeflate_decompressor* inflater) const { libdeflate_free_decompressor(inflater); }
};

/// True when `data` is one zlib stream, with nothing behind it, of just `length` bytes.
bool inflate(const PngData& data, uchar* out, qint64 length)
{
    const std::unique_ptr<libdeflate_decompressor, FreeInflater> inflater(libdeflate_alloc_decompressor());
    if (!inflater)
        return false;
    size_t taken = 0;
    const libdeflate_result result =
        libdeflate_zlib_decompress_ex(inflater.get(), data.stream.get(), size_t(data.length), out,
                                      size_t(length), &taken, nullptr); // null: all of `out` or an error
    return result == LIBDEFLATE_SUCCESS && qint64(taken) == data.length;
}

/// The rows on their way from the filtered ones to those of the picture: one thread unfilters, another
/// follows it and converts.
class RowWork
{
  public:
    RowWork(const PngHeader& header, const PngRows& rows, const Arrangement& place, uchar* block,
            const CancelFlag& cancel)
        : m_height(header.size.height()), m_pixelBytes(std::max(1, header.channels() * header.depth / 8)),
          m_rows(rows), m_place(place), m_block(block), m_cancel(cancel), m_zeros(size_t(place.rawRow))
    {
    }

    /// False when a row had no valid filter or the work was cancelled.
    bool run();

  private:
    uchar* rawAt(int y) const { return m_block + m_place.rawStart + m_place.rawRow * y; }
    bool unfilter(int from, int to) const;
    void convert(int from, int to) const;
    bool unfilterAll();
    void convertAll();

    static constexpr int givenUp = -1;
    const int m_height;
    const int m_pixelBytes;
    const PngRows& m_rows;
    const Arrangement& m_place;
    uchar* const m_block;
    const CancelFlag& m_cancel;
    const std::vector<uchar> m_zeros; ///< what stands above the first row
    std::atomic<int> m_ready = 0;     ///< rows that are unfiltered, or givenUp
};

bool RowWork::unfilter(int from, int to) const
{
    for (int y = from; y < to; ++y) {
        uchar* row = rawAt(y);
        const uchar* above = y > 0 ? rawAt(y - 1) + 1 : m_zeros.data();
        if (!unfilterPngRow(row[0], row + 1, above, m_place.rawRow - 1, m_pixelBytes))
            return false;
    }
    return true;
}

void RowWork::convert(int from, int to) const
{
    for (int y = from; y < to; ++y)
        m_rows.convert(rawAt(y) + 1, m_block + m_place.line * y, m_place.line);
}

/// Unfilters row after row and tells how far it is.
bool RowWork::unfilterAll()
{
    constexpr qint64 batchBytes = 128 * 1024;
    const int batch = int(std::clamp<qint64>(batchBytes / m_place.rawRow, 1, m_height));
    for (int y = 0; y < m_height;) {
        const int to = std::min(y + batch, m_height);
        const bool good = !m_cancel.load(std::memory_order_relaxed) && unfilter(y, to);
        m_ready = good ? to : givenUp;
        m_ready.notify_one();
        if (!good)
            return false;
        y = to;
    }
    return true;
}

void RowWork::convertAll()
{
    for (int done = 0; done < m_height;) {
        m_ready.wait(done);
        const int ready = m_ready;
        if (ready == givenUp)
            return;
        convert(done, ready);
        done = ready;
    }
}

bool RowWork::run()
{
    std::jthread follower;
    if (m_place.rawBytes >= worthAThread && std::thread::hardware_concurrency() > 1) {
        try {
            follower = std::jthread([this] { convertAll(); });
        } catch (const std::system_error&) {
            // no thread left on this machine: one after the other
        }
    }
    const bool good = unfilterAll();
    if (follower.joinable())
        follower.join();
    else if (good)
        convert(0, m_height);
    return good;
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
    if (!block || !inflate(*data, block.get() + place.rawStart, place.rawBytes))
        return {};
    data->stream.reset();
    if (!RowWork(header, rows, place, block.get(), cancel).run())
        return {};
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

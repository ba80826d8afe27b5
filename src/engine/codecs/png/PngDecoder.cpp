#include "engine/codecs/png/PngDecoder.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Guarded.h"
#include "engine/codecs/ImageRows.h"
#include "engine/codecs/png/PngFast.h"
#include "engine/codecs/png/PngProfile.h"
#include "engine/codecs/png/PngRows.h"
#include "engine/Limits.h"

#include <QtEndian>

#include <png.h>

#include <algorithm>
#include <cstring>

namespace quorvia::engine {

namespace {

constexpr bool littleEndian = Q_BYTE_ORDER == Q_LITTLE_ENDIAN;
constexpr qint64 longestPalette = 3 * 256;
constexpr qint64 longestTransparency = 256;
constexpr int maxChunks = 1'000'000;

/// One decode under way. libpng is used in its feeding mode, whose rows come as soon as the bytes for them
/// are there: of a file cut short nothing is lost, and chunks that make no pixels are never read.
class Session
{
  public:
    Session(const ByteSource& bytes, const PngHeader& header, const CancelFlag& cancel)
        : m_bytes(bytes), m_header(header), m_cancel(cancel)
    {
    }
    ~Session() { png_destroy_read_struct(&m_png, &m_info, nullptr); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    Result<Picture> decode();

  private:
    static void takeError(png_structp png, png_const_charp message);
    static void takeWarning(png_structp png, png_const_charp message);
    static void takeInfo(png_structp png, png_infop info);
    static void takeRow(png_structp png, png_bytep row, png_uint_32 number, int pass);

    bool open();
    bool feed(qint64 from, qint64 to);
    bool feedChunk(const PngChunk& chunk);
    Status feedChunks();
    Status prepare();
    Status readPalette();
    void setTransforms();
    bool isTransparent() const { return png_get_valid(m_png, m_info, PNG_INFO_tRNS) != 0; }
    Error error() const;

    const ByteSource& m_bytes;
    const PngHeader& m_header;
    const CancelFlag& m_cancel;
    Landing m_landing;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
    png_byte m_buffer[65536];

    QImage m_image;
    QList<QRgb> m_table;
    uchar* m_bits = nullptr;
    qsizetype m_stride = 0;
    bool m_anyRow = false;
    bool m_lastRow = false; ///< of the last pass
    bool m_damaged = false; ///< libpng warned or gave up
    bool m_ended = false;   ///< the end chunk stands
    bool m_cancelled = false;
};

void Session::takeError(png_structp png, png_const_charp message)
{
    auto& landing = static_cast<Session*>(png_get_error_ptr(png))->m_landing;
    std::strncpy(landing.text, message, sizeof landing.text - 1);
    std::longjmp(landing.place, 1);
}

void Session::takeWarning(png_structp png, png_const_charp)
{
    static_cast<Session*>(png_get_error_ptr(png))->m_damaged = true;
}

void Session::takeInfo(png_structp png, png_infop)
{
    static_cast<Session*>(png_get_progressive_ptr(png))->setTransforms();
}

void Session::takeRow(png_structp png, png_bytep row, png_uint_32 number, int pass)
{
    auto& session = *static_cast<Session*>(png_get_progressive_ptr(png));
    if (session.m_cancel.load(std::memory_order_relaxed)) {
        session.m_cancelled = true;
        png_error(png, "dropped by the asker");
    }
    const auto height = static_cast<png_uint_32>(session.m_header.size.height());
    if (number >= height)
        return;
    if (row) {
        png_progressive_combine_row(png, session.m_bits + number * session.m_stride, row);
        session.m_anyRow = true;
    }
    const int lastPass = session.m_header.interlaced ? 6 : 0;
    session.m_lastRow = pass == lastPass && number == height - 1;
}

Error Session::error() const
{
    return Error{m_cancelled ? ErrorKind::Cancelled : ErrorKind::Damaged,
                 QString::fromLatin1(m_landing.text)};
}

bool Session::open()
{
    return guarded(m_landing, [this] {
        m_png = png_create_read_struct(PNG_LIBPNG_VER_STRING, this, takeError, takeWarning);
        m_info = m_png ? png_create_info_struct(m_png) : nullptr;
        if (!m_info) {
            std::strncpy(m_landing.text, "libpng does not start", sizeof m_landing.text - 1);
            std::longjmp(m_landing.place, 1);
        }
        const auto maxSide = static_cast<png_uint_32>(Limits::machine().maxSide);
        constexpr png_uint_32 mostChunks = 16; // kept by libpng; it is fed fewer
        constexpr png_alloc_size_t chunkBytes = 1 << 20;
        png_set_user_limits(m_png, maxSide, maxSide);
        png_set_chunk_cache_max(m_png, mostChunks);
        png_set_chunk_malloc_max(m_png, chunkBytes);
        png_set_crc_action(m_png, PNG_CRC_WARN_USE, PNG_CRC_WARN_USE);
        // The chunks have check sums of their own, and a wrong one of the stream would cost the last row.
        png_set_option(m_png, PNG_IGNORE_ADLER32, PNG_OPTION_ON);
        png_set_progressive_read_fn(m_png, this, takeInfo, takeRow, nullptr);
    });
}

/// Gives libpng the bytes from offset `from` up to `to` or the end of the file; false when it gave up.
bool Session::feed(qint64 from, qint64 to)
{
    while (from < to) {
        if (m_cancel.load(std::memory_order_relaxed)) {
            m_cancelled = true;
            return false;
        }
        const qint64 count = m_bytes.read(from, m_buffer, std::min<qint64>(sizeof m_buffer, to - from));
        if (count <= 0)
            return true;
        if (!guarded(m_landing, [this, count] {
                png_process_data(m_png, m_info, m_buffer, static_cast<size_t>(count));
            }))
            return false;
        from += count;
    }
    return true;
}

/// Feeds one chunk when it makes pixels; the first of the data chunks needs the picture to be there.
bool Session::feedChunk(const PngChunk& chunk)
{
    const bool before = m_image.isNull();
    switch (chunk.type) {
    case PngChunk::palette:
        if (before && m_header.colors == PNG_COLOR_TYPE_PALETTE && chunk.length <= longestPalette)
            return feed(chunk.offset, chunk.behind());
        break;
    case PngChunk::transparency:
        if (before && (m_header.colors & PNG_COLOR_MASK_ALPHA) == 0 && chunk.length <= longestTransparency)
            return feed(chunk.offset, chunk.behind());
        break;
    case PngChunk::data:
        return feed(chunk.offset, chunk.behind());
    case PngChunk::end:
        m_ended = chunk.behind() <= m_bytes.size();
        break;
    default:
        break;
    }
    return true;
}

/// Feeds the whole file. Not ok only where nothing can be shown; other damage is remembered.
Status Session::feedChunks()
{
    PngChunks chunks(m_bytes);
    for (int count = 0; count < maxChunks && !m_ended; ++count) {
        const std::optional<PngChunk> chunk = chunks.next();
        if (!chunk)
            break;
        if (m_cancel.load(std::memory_order_relaxed))
            m_cancelled = true;
        if (m_cancelled)
            break;
        if (chunk->type == PngChunk::data && m_image.isNull()) {
            if (Status prepared = prepare(); !prepared)
                return prepared;
        }
        if (!feedChunk(*chunk)) {
            m_damaged = true;
            break;
        }
    }
    return ok();
}

Status Session::readPalette()
{
    png_colorp colors = nullptr;
    int count = 0;
    if (png_get_PLTE(m_png, m_info, &colors, &count) == 0)
        return Error{ErrorKind::Damaged, QStringLiteral("no palette before the pixels")};
    png_bytep alphas = nullptr;
    int alphaCount = 0;
    if (isTransparent())
        png_get_tRNS(m_png, m_info, &alphas, &alphaCount, nullptr);
    m_table.reserve(count);
    for (int i = 0; i < count; ++i)
        m_table.append(
            qRgba(colors[i].red, colors[i].green, colors[i].blue, i < alphaCount ? alphas[i] : 255));
    return ok();
}

/// Makes the picture, once all chunks before the pixels were fed.
Status Session::prepare()
{
    const QImage::Format format = pngImageFormat(m_header, isTransparent());
    if (m_header.colors == PNG_COLOR_TYPE_PALETTE) {
        if (Status read = readPalette(); !read)
            return read;
    } else if (format == QImage::Format_Mono) {
        m_table = {qRgb(0, 0, 0), qRgb(255, 255, 255)};
    }
    m_image = allocateImage(m_header.size, format);
    if (m_image.isNull())
        return noMemoryError();
    m_bits = m_image.bits();
    m_stride = m_image.bytesPerLine();
    return ok();
}

/// Tells libpng how its rows become those of the picture. Runs below guarded().
void Session::setTransforms()
{
    const QImage::Format format = m_image.format();
    const bool color = format == QImage::Format_RGB32 || format == QImage::Format_ARGB32;
    if (m_header.depth == 16)
        png_set_scale_16(m_png); // rounds; the strip variant would cut off
    if (format == QImage::Format_Indexed8)
        png_set_packing(m_png);
    else if (format == QImage::Format_Grayscale8)
        png_set_expand_gray_1_2_4_to_8(m_png);
    if (format == QImage::Format_ARGB32 && isTransparent())
        png_set_tRNS_to_alpha(m_png);
    if (color && (m_header.colors & PNG_COLOR_MASK_COLOR) == 0)
        png_set_gray_to_rgb(m_png);
    if (format == QImage::Format_RGB32)
        png_set_filler(m_png, 0xff, littleEndian ? PNG_FILLER_AFTER : PNG_FILLER_BEFORE);
    if (color && littleEndian)
        png_set_bgr(m_png);
    if (format == QImage::Format_ARGB32 && !littleEndian)
        png_set_swap_alpha(m_png);
    png_set_interlace_handling(m_png);
    png_read_update_info(m_png, m_info);
    if (static_cast<qsizetype>(png_get_rowbytes(m_png, m_info)) > m_stride)
        png_error(m_png, "rows longer than the picture's");
}

Result<Picture> Session::decode()
{
    if (!open() || !feed(0, pngHeaderLength))
        return error();
    const Status fed = feedChunks();
    if (!fed)
        return fed.error();
    if (m_cancelled)
        return error();
    if (!m_anyRow)
        return Error{ErrorKind::Damaged, QStringLiteral("no row of pixels could be read")};
    if (!m_table.isEmpty()) {
        coverUsedEntries(m_table, m_image);
        m_image.setColorTable(m_table);
    }
    return Picture{std::move(m_image), m_header.size, m_header.depth * m_header.channels(),
                   m_lastRow && m_ended && !m_damaged};
}

} // namespace

Result<Picture> decodePngByLibrary(const ByteSource& source, const PngHeader& header,
                                   const CancelFlag& cancel)
{
    return std::make_unique<Session>(source, header, cancel)->decode();
}

PngDecoder::PngDecoder(std::shared_ptr<ByteSource> source, const PngHeader& header)
    : m_source(std::move(source)), m_header(header)
{
}

Result<PageHeader> PngDecoder::facts()
{
    return PageHeader{m_header.size, m_header.depth * m_header.channels()};
}

Result<Picture> PngDecoder::decodePage(const PageHeader&, QSize, const CancelFlag& cancel)
{
    if (cancel)
        return Error{ErrorKind::Cancelled, QStringLiteral("dropped by the asker")};
    std::optional<Picture> whole = decodePngFast(*m_source, m_header, cancel);
    Result<Picture> picture =
        whole ? Result<Picture>(*std::move(whole)) : decodePngByLibrary(*m_source, m_header, cancel);
    if (picture)
        picture->profile = readPngProfile(*m_source, m_header);
    return picture;
}

} // namespace quorvia::engine

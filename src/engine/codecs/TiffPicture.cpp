#include "engine/codecs/TiffPicture.h"

#include "engine/codecs/Orientation.h"
#include "engine/codecs/TiffRows.h"
#include "engine/codecs/TiffStriles.h"
#include "engine/Limits.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

Error noMemory()
{
    return Error{ErrorKind::TooLarge, QStringLiteral("no memory for the picture")};
}

Error cancelled()
{
    return Error{ErrorKind::Cancelled, QStringLiteral("cancelled")};
}

/// TooLarge when a picture of `format` and the `workBytes` that it takes to decode it are, together, more
/// than a picture may cost. Asked before anything is allocated.
Status checkMemory(const TiffLayout& layout, QImage::Format format, qint64 workBytes)
{
    const qint64 bits = QImage::toPixelFormat(format).bitsPerPixel();
    const qint64 rowBytes = (layout.stored.width() * bits + 31) / 32 * 4;
    if (workBytes > Limits::machine().maxBytes - rowBytes * layout.stored.height())
        return Error{ErrorKind::TooLarge,
                     QStringLiteral("%1 MB to decode it are more than a picture may take on this machine")
                         .arg(workBytes >> 20)};
    return ok();
}

/// How much of a picture was drawn.
struct Progress
{
    bool drawn = false;
    bool complete = true;

    void note(const StrileOutcome& outcome)
    {
        drawn = drawn || outcome.rows > 0;
        complete = complete && outcome.whole;
    }
};

/// The page with our own conversion: strile after strile.
class PageDecoder
{
  public:
    PageDecoder(TiffHandle& handle, std::shared_ptr<ByteSource> source, const TiffLayout& layout)
        : m_layout(layout), m_striles(handle, std::move(source), layout), m_rows(layout)
    {
    }

    Result<QImage> decode(const CancelFlag& cancel, Progress& progress);

  private:
    int piecesAcross() const
    {
        return (m_layout.stored.width() + m_layout.strile.width() - 1) / m_layout.strile.width();
    }
    int piecesDown() const
    {
        return (m_layout.stored.height() + m_layout.strile.height() - 1) / m_layout.strile.height();
    }
    int planes() const { return m_layout.planar ? m_layout.usedSamples() : 1; }
    StrileOutcome decodePlanes(quint32 index, int first, int rows, const CancelFlag& cancel);
    void drawRows(QImage& image, int x, int y, int rows);

    const TiffLayout& m_layout;
    TiffStriles m_striles;
    TiffRows m_rows;
    std::array<TiffBuffer, 5> m_buffers;
};

/// Decodes the strile of every plane that is needed; the outcome is that of the worst of them.
StrileOutcome PageDecoder::decodePlanes(quint32 index, int first, int rows, const CancelFlag& cancel)
{
    const quint32 perPlane = quint32(piecesAcross()) * quint32(piecesDown());
    StrileOutcome worst = {rows, true};
    for (int plane = 0; plane < planes() && worst.rows > 0; ++plane) {
        const StrileOutcome one = m_striles.decode(index + quint32(plane) * perPlane, first, rows,
                                                   m_buffers[size_t(plane)].get(), cancel);
        worst = {std::min(worst.rows, one.rows), worst.whole && one.whole};
    }
    return worst;
}

void PageDecoder::drawRows(QImage& image, int x, int y, int rows)
{
    const int count = std::min(m_layout.strile.width(), m_layout.stored.width() - x);
    TiffSampleRow samples;
    samples.step = m_layout.planar ? 1 : m_layout.samples;
    for (int i = 0; i < rows; ++i) {
        for (size_t s = 0; s < size_t(m_layout.usedSamples()); ++s) {
            samples.bytes[s] = m_buffers[m_layout.planar ? s : 0].get() + i * m_striles.rowBytes();
            samples.first[s] = m_layout.planar ? 0 : int(s);
        }
        m_rows.convert(samples, count, image.scanLine(y + i), x);
    }
}

Result<QImage> PageDecoder::decode(const CancelFlag& cancel, Progress& progress)
{
    if (m_striles.rowBytes() == 0)
        return Error{ErrorKind::Damaged, QStringLiteral("the rows are too short for their pixels")};
    // Strips that are not compressed may be the whole page: they are taken in pieces.
    constexpr qint64 pieceBytes = 1 << 20;
    const int whole = m_layout.strile.height();
    const bool pieces = !m_layout.tiled && !m_layout.compressed;
    const int step = pieces ? int(std::clamp<qint64>(pieceBytes / m_striles.rowBytes(), 1, whole)) : whole;
    const Status affordable = checkMemory(m_layout, m_rows.format(), m_striles.memoryFor(step, planes()));
    if (!affordable)
        return affordable.error();
    for (int plane = 0; plane < planes(); ++plane) {
        m_buffers[size_t(plane)] = m_striles.allocate(step);
        if (!m_buffers[size_t(plane)])
            return noMemory();
    }
    QImage image = allocateImage(m_layout.stored, m_rows.format());
    if (image.isNull())
        return noMemory();
    image.setColorTable(m_rows.colorTable());

    quint32 index = 0;
    for (int top = 0; top < m_layout.stored.height(); top += whole) {
        const int visible = std::min(whole, m_layout.stored.height() - top);
        for (int x = 0; x < m_layout.stored.width(); x += m_layout.strile.width(), ++index) {
            for (int first = 0; first < visible; first += step) {
                if (cancel)
                    return cancelled();
                const int shown = std::min(step, visible - first);
                const StrileOutcome outcome =
                    decodePlanes(index, first, m_layout.tiled ? whole : shown, cancel);
                if (cancel)
                    return cancelled(); // the search for a break may have ended early
                drawRows(image, x, top + first, std::min(outcome.rows, shown));
                progress.note(outcome);
            }
        }
    }
    return image;
}

/// libtiff packs its pixels as alpha, blue, green, red; with alpha the colours are multiplied by it.
void fromLibraryPixels(QImage& image, int top, int rows)
{
    const bool hasAlpha = image.format() == QImage::Format_ARGB32;
    for (int y = top; y < top + rows; ++y) {
        auto* row = reinterpret_cast<quint32*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            const quint32 pixel = row[x];
            const QRgb color = qRgba(int(TIFFGetR(pixel)), int(TIFFGetG(pixel)), int(TIFFGetB(pixel)),
                                     hasAlpha ? int(TIFFGetA(pixel)) : 255);
            row[x] = hasAlpha ? qUnpremultiply(color) : color;
        }
    }
}

struct LibraryImage
{
    TIFFRGBAImage image = {};
    bool open = false;
    LibraryImage() = default;
    LibraryImage(const LibraryImage&) = delete;
    LibraryImage& operator=(const LibraryImage&) = delete;
    ~LibraryImage()
    {
        if (open)
            TIFFRGBAImageEnd(&image);
    }
};

/// The page with libtiff's conversion, a row of striles at a time.
Result<QImage> decodeByLibrary(TiffHandle& handle, const TiffLayout& layout, const CancelFlag& cancel,
                               Progress& progress)
{
    LibraryImage reader;
    char text[1024] = "";
    reader.open = TIFFRGBAImageBegin(&reader.image, handle.get(), 0, text) != 0;
    if (!reader.open)
        return Error{ErrorKind::Unsupported, QString::fromLocal8Bit(text)};
    // Both alike: the rows come as they are stored and are turned afterwards.
    reader.image.orientation = ORIENTATION_TOPLEFT;
    reader.image.req_orientation = ORIENTATION_TOPLEFT;

    const bool hasAlpha = layout.alpha != TiffAlpha::None;
    const QImage::Format format = hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32;
    const quint64 strile = layout.tiled ? TIFFTileSize64(handle.get()) : TIFFStripSize64(handle.get());
    constexpr quint64 beyond = quint64(1) << 44; // so that what follows cannot overflow
    const qint64 planes = layout.planar ? layout.samples : 1;
    const Status affordable = checkMemory(layout, format, qint64(std::min(strile, beyond)) * planes);
    if (!affordable)
        return affordable.error();
    QImage image = allocateImage(layout.stored, format);
    if (image.isNull())
        return noMemory();
    for (int top = 0; top < image.height(); top += layout.strile.height()) {
        if (cancel)
            return cancelled();
        const int rows = std::min(layout.strile.height(), image.height() - top);
        const int errorsBefore = handle.errorCount();
        reader.image.row_offset = top;
        reader.image.col_offset = 0;
        auto* raster = reinterpret_cast<uint32_t*>(image.scanLine(top));
        const bool read =
            TIFFRGBAImageGet(&reader.image, raster, uint32_t(image.width()), uint32_t(rows)) != 0;
        fromLibraryPixels(image, top, rows);
        progress.drawn = progress.drawn || (read && handle.errorCount() == errorsBefore);
        progress.complete = progress.complete && read && handle.errorCount() == errorsBefore;
    }
    return image;
}

} // namespace

Result<Picture> decodeTiffPage(TiffHandle& handle, std::shared_ptr<ByteSource> source,
                               const TiffLayout& layout, const CancelFlag& cancel)
{
    Progress progress;
    Result<QImage> stored = layout.colors == TiffColors::Library
                                ? decodeByLibrary(handle, layout, cancel, progress)
                                : PageDecoder(handle, std::move(source), layout).decode(cancel, progress);
    if (!stored)
        return stored.error();
    if (!progress.drawn)
        return Error{ErrorKind::Damaged, handle.lastError()};
    Picture picture;
    picture.image = upright(*std::move(stored), layout.orientation);
    if (picture.image.isNull())
        return noMemory();
    picture.fullSize = layout.size;
    picture.bitsPerPixel = layout.bits * layout.samples;
    picture.complete = progress.complete;
    return picture;
}

} // namespace quorvia::engine

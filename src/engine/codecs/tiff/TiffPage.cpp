#include "engine/codecs/tiff/TiffPage.h"

#include "engine/Bands.h"
#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/tiff/TiffPieces.h"
#include "engine/codecs/tiff/TiffRows.h"
#include "engine/codecs/tiff/TiffStriles.h"
#include "engine/codecs/tiff/TiffYcc.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <new>
#include <vector>

namespace quorvia::engine {

namespace {

/// The memory of the picture; several threads write to it, each to other pixels.
struct Canvas
{
    uchar* bits = nullptr;
    qsizetype bytesPerLine = 0;
};

/// What one thread needs to decode pieces: a handle of its own, or a borrowed one, and room for a strile.
class Worker
{
  public:
    Worker(TiffHandle& handle, std::shared_ptr<ByteSource> source, const TiffLayout& layout)
        : m_layout(layout), m_striles(handle, std::move(source), m_layout), m_rows(m_layout), m_ycc(m_layout)
    {
    }
    /// A worker, with room for `rows` rows, for the page whose directory is at that offset; null when it
    /// cannot be opened once more.
    static std::unique_ptr<Worker> beside(quint64 directory, const std::shared_ptr<ByteSource>& source,
                                          int rows);

    qint64 rowBytes() const { return m_striles.rowBytes(); }
    qint64 memoryFor(int rows) const { return m_striles.memoryFor(blockRows(rows), planes()); }
    QImage::Format format() const { return m_rows.format(); }
    QList<QRgb> colorTable() const { return m_rows.colorTable(); }
    /// Makes room for `rows` rows; false when there is none.
    bool allocate(int rows);
    /// Decodes `piece` of `pieces` and draws what came of it.
    void draw(const TiffPieces& pieces, const TiffPiece& piece, const Canvas& canvas,
              const CancelFlag& cancel);
    TiffProgress progress() const { return m_progress; }

  private:
    int blockRows(int rows) const { return (rows + m_layout.block.height() - 1) / m_layout.block.height(); }
    int planes() const { return m_layout.planar ? m_layout.usedSamples() : 1; }
    StrileOutcome decodePlanes(qint64 perPlane, const TiffPiece& piece, int rows, const CancelFlag& cancel);
    void drawRows(const TiffPiece& piece, int rows, const Canvas& canvas);

    std::unique_ptr<TiffHandle> m_ownHandle;
    const TiffLayout m_layout;
    TiffStriles m_striles;
    TiffRows m_rows;
    TiffYcc m_ycc;
    std::array<TiffBuffer, 5> m_buffers;
    TiffProgress m_progress;
};

std::unique_ptr<Worker> Worker::beside(quint64 directory, const std::shared_ptr<ByteSource>& source, int rows)
{
    auto own = TiffHandle::reading(source);
    if (!own->get() || !TIFFSetSubDirectory(own->get(), directory))
        return {};
    const Result<TiffLayout> layout = readTiffLayout(own->get());
    if (!layout)
        return {};
    auto worker = std::make_unique<Worker>(*own, source, *layout);
    worker->m_ownHandle = std::move(own);
    return worker->allocate(rows) ? std::move(worker) : nullptr;
}

bool Worker::allocate(int rows)
{
    for (int plane = 0; plane < planes(); ++plane) {
        m_buffers[size_t(plane)] = m_striles.allocate(blockRows(rows));
        if (!m_buffers[size_t(plane)])
            return false;
    }
    return true;
}

/// Decodes the strile of every plane that is needed; the outcome is that of the worst of them.
StrileOutcome Worker::decodePlanes(qint64 perPlane, const TiffPiece& piece, int rows,
                                   const CancelFlag& cancel)
{
    StrileOutcome worst = {rows, true};
    for (int plane = 0; plane < planes() && worst.rows > 0; ++plane) {
        const auto index = quint32(piece.strile + plane * perPlane);
        const int tall = m_layout.block.height();
        const StrileOutcome one = m_striles.decode(index, piece.first / tall, blockRows(rows),
                                                   m_buffers[size_t(plane)].get(), cancel);
        worst = {std::min(worst.rows, one.rows * tall), worst.whole && one.whole};
    }
    return worst;
}

void Worker::drawRows(const TiffPiece& piece, int rows, const Canvas& canvas)
{
    const int count = std::min(m_layout.strile.width(), m_layout.stored.width() - piece.x);
    TiffSampleRow samples;
    samples.step = m_layout.planar ? 1 : m_layout.samples;
    for (int i = 0; i < rows; ++i) {
        uchar* const line = canvas.bits + canvas.bytesPerLine * (piece.y + i);
        if (m_layout.colors == TiffColors::YCbCr) {
            const int tall = m_layout.block.height();
            const uchar* blocks = m_buffers[0].get() + i / tall * m_striles.rowBytes();
            m_ycc.convert(blocks, i % tall, count, reinterpret_cast<QRgb*>(line) + piece.x);
            continue;
        }
        for (size_t s = 0; s < size_t(m_layout.usedSamples()); ++s) {
            samples.bytes[s] = m_buffers[m_layout.planar ? s : 0].get() + i * m_striles.rowBytes();
            samples.first[s] = m_layout.planar ? 0 : int(s);
        }
        m_rows.convert(samples, count, line, piece.x);
    }
}

void Worker::draw(const TiffPieces& pieces, const TiffPiece& piece, const Canvas& canvas,
                  const CancelFlag& cancel)
{
    if (piece.rows == 0)
        return;
    const int rows = m_layout.tiled ? m_layout.strile.height() : piece.rows;
    const StrileOutcome outcome = decodePlanes(pieces.strilesPerPlane(), piece, rows, cancel);
    if (cancel)
        return; // the search for a break may have ended early
    drawRows(piece, std::min(outcome.rows, piece.rows), canvas);
    m_progress.drawn = m_progress.drawn || outcome.rows > 0;
    m_progress.complete = m_progress.complete && outcome.whole;
}

/// How many threads decode `pieces`: no more than there is work and memory for.
int threadCount(const Worker& worker, const TiffPieces& pieces, const TiffLayout& layout, int most)
{
    const qint64 work = worker.rowBytes() * layout.stored.height() * (layout.compressed ? 4 : 1);
    const int wanted = bandCount(int(std::min<qint64>(pieces.count(), 1 << 16)), work);
    int count = pieces.areApart() ? wanted : 1;
    if (most > 0)
        count = std::min(count, most);
    while (count > 1 && !checkTiffMemory(layout, worker.format(), count * worker.memoryFor(pieces.tallest())))
        --count;
    return count;
}

} // namespace

Result<QImage> decodeTiffStriles(TiffHandle& handle, const std::shared_ptr<ByteSource>& source,
                                 const TiffLayout& layout, const CancelFlag& cancel, TiffProgress& progress,
                                 int mostThreads)
{
    std::vector<std::unique_ptr<Worker>> workers;
    workers.push_back(std::make_unique<Worker>(handle, source, layout));
    Worker& first = *workers.front();
    if (first.rowBytes() == 0)
        return Error{ErrorKind::Damaged, QStringLiteral("the rows are too short for their pixels")};
    const TiffPieces pieces(layout, first.rowBytes());
    const Status affordable = checkTiffMemory(layout, first.format(), first.memoryFor(pieces.tallest()));
    if (!affordable)
        return affordable.error();
    if (!first.allocate(pieces.tallest()))
        return noMemoryError();
    QImage image = allocateImage(layout.stored, first.format());
    if (image.isNull())
        return noMemoryError();
    image.setColorTable(first.colorTable());
    const Canvas canvas{image.bits(), image.bytesPerLine()};

    const int count = threadCount(first, pieces, layout, mostThreads);
    workers.resize(size_t(count));
    const quint64 directory = TIFFCurrentDirOffset(handle.get());
    std::atomic<qint64> next = 0;
    std::atomic<bool> starved = false;
    inBands(count, count, [&](int index, int, int) {
        try {
            std::unique_ptr<Worker>& worker = workers[size_t(index)];
            if (index > 0)
                worker = Worker::beside(directory, source, pieces.tallest());
            if (!worker)
                return; // the others do it
            for (qint64 piece = next++; piece < pieces.count() && !cancel && !starved; piece = next++)
                worker->draw(pieces, pieces.at(piece), canvas, cancel);
        } catch (const std::bad_alloc&) {
            starved = true; // nothing may leave a thread
        }
    });
    if (cancel)
        return cancelledError();
    if (starved)
        return noMemoryError();
    for (const auto& worker : workers) {
        if (!worker)
            continue;
        const TiffProgress made = worker->progress();
        progress.drawn = progress.drawn || made.drawn;
        progress.complete = progress.complete && made.complete;
    }
    return image;
}

} // namespace quorvia::engine

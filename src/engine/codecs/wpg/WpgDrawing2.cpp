#include "engine/codecs/wpg/WpgDrawing2.h"

#include "engine/codecs/wpg/WpgFeed.h"
#include "engine/codecs/wpg/WpgListener.h"

#include <libwpg/libwpg.h>

#include <algorithm>
#include <cmath>

namespace quorvia::engine {

namespace {

/// Thrown out of libwpg when the drawing is to stop.
struct Stop
{
};

/// Bytes in memory as libwpg reads them. Ends the parsing by an exception when the canvas has stopped.
class MemoryStream final : public librevenge::RVNGInputStream
{
  public:
    MemoryStream(const QByteArray& bytes, const WpgCanvas& canvas) : m_bytes(bytes), m_canvas(canvas) {}

    bool isStructured() override { return false; }
    unsigned subStreamCount() override { return 0; }
    const char* subStreamName(unsigned) override { return nullptr; }
    bool existsSubStream(const char*) override { return false; }
    RVNGInputStream* getSubStreamByName(const char*) override { return nullptr; }
    RVNGInputStream* getSubStreamById(unsigned) override { return nullptr; }

    const unsigned char* read(unsigned long wanted, unsigned long& got) override
    {
        if (m_canvas.stopped())
            throw Stop();
        got = std::min(wanted, static_cast<unsigned long>(m_bytes.size() - m_at));
        if (got == 0)
            return nullptr;
        const char* start = m_bytes.constData() + m_at;
        m_at += qsizetype(got);
        return reinterpret_cast<const unsigned char*>(start);
    }

    int seek(long offset, librevenge::RVNG_SEEK_TYPE from) override
    {
        qint64 target = offset;
        if (from == librevenge::RVNG_SEEK_CUR)
            target += m_at;
        else if (from == librevenge::RVNG_SEEK_END)
            target += m_bytes.size();
        m_at = std::clamp<qint64>(target, 0, m_bytes.size());
        return m_at == target ? 0 : 1;
    }
    long tell() override { return long(m_at); }
    bool isEnd() override { return m_at >= m_bytes.size(); }

  private:
    const QByteArray& m_bytes;
    const WpgCanvas& m_canvas;
    qint64 m_at = 0;
};

} // namespace

QSizeF wpg2Extent(const WpgFile& file, const ByteSource& source)
{
    const auto start = std::find_if(file.records.begin(), file.records.end(),
                                    [](const WpgRecord& record) { return record.type == wpg2::start; });
    if (start == file.records.end())
        return {};
    constexpr qint64 longest = 5 + 8 * 4;
    WpgNumbers in(source.bytes(start->offset, std::min(start->length, longest)));
    double unitsX = in.u16();
    double unitsY = in.u16();
    if (unitsX == 0 || unitsY == 0)
        unitsX = unitsY = 1200;
    const bool precise = in.u8() == 1; // 16 bits before and behind the point
    const auto coordinate = [&] { return precise ? in.i32() / 65536.0 : double(in.i16()); };
    in.skip(precise ? 16 : 8); // the viewport
    const double left = coordinate();
    const double top = coordinate();
    const double right = coordinate();
    return QSizeF(std::abs(right - left) / unitsX, std::abs(coordinate() - top) / unitsY);
}

bool playWpg2(const WpgFile& file, const ByteSource& source, WpgCanvas& canvas)
{
    try {
        const WpgFeed feed = wpgFeed(file, source);
        if (feed.bytes.isEmpty())
            return false;
        MemoryStream stream(feed.bytes, canvas);
        WpgPalettes palettes;
        WpgListener listener(
            canvas, [&](int index) { return feedBitmap(file, source, feed, index, palettes, canvas); });
        return libwpg::WPGraphics::parse(&stream, &listener, libwpg::WPG_WPG2) && !feed.partial;
    } catch (...) { // ours to stop it, the library's own, or memory: what was drawn counts
        return false;
    }
}

} // namespace quorvia::engine

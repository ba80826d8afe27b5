#include "engine/codecs/losslessjpeg/LosslessJpegDecoder.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/losslessjpeg/LosslessJpegColor.h"
#include "engine/codecs/losslessjpeg/LosslessJpegProfile.h"
#include "engine/codecs/losslessjpeg/LosslessJpegScan.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr int endOfImage = 0xd9;
constexpr int startOfScan = 0xda;
constexpr int huffmanTables = 0xc4;
constexpr int restartInterval = 0xdd;
constexpr int jfifSegment = 0xe0;
constexpr int profileSegment = 0xe2;
constexpr int adobeSegment = 0xee;

bool startsWith(ByteSpan body, const char* text, size_t length)
{
    return body.size() >= length &&
           std::equal(text, text + length, body.begin(), [](char a, uchar b) { return uchar(a) == b; });
}

/// One decode under way: the marker segments in turn, with what they set.
class Session
{
  public:
    Session(ByteSpan bytes, const LosslessFrame& frame) : m_bytes(bytes), m_frame(frame) {}

    /// Decodes every scan into an image.
    Result<Picture> decode(const CancelFlag& cancel);

  private:
    Status takeSegment(const JpegSegment& segment, const CancelFlag& cancel);
    Status takeScan(const JpegSegment& segment, const CancelFlag& cancel);
    Status makeCanvas();
    bool isDone() const { return m_decoded == (1U << m_frame.components.size()) - 1; }

    ByteSpan m_bytes;
    const LosslessFrame& m_frame;
    std::array<std::optional<HuffmanSpec>, 4> m_tables;
    int m_interval = 0;   ///< restart interval, in pixels
    int m_transform = -1; ///< Adobe's; -1 without its mark
    bool m_jfif = false;
    LosslessProfileReader m_profile;
    std::optional<LosslessCanvas> m_canvas;
    unsigned m_decoded = 0; ///< a bit a component
    bool m_complete = true;
    size_t m_next = 0; ///< offset of the next segment
};

Status Session::makeCanvas()
{
    const LosslessColor color = losslessColor(m_frame.components.size(), m_transform, m_jfif);
    QImage image = allocateImage(m_frame.size, color == LosslessColor::Gray ? QImage::Format_Grayscale8
                                                                            : QImage::Format_RGB32);
    if (image.isNull())
        return noMemoryError();
    m_canvas.emplace(std::move(image), color, m_frame.precision);
    return ok();
}

Status Session::takeScan(const JpegSegment& segment, const CancelFlag& cancel)
{
    const Result<LosslessScan> scan = readLosslessScan(segment.body, m_frame);
    if (!scan)
        return scan.error();
    const int width = m_frame.size.width();
    if (m_interval % width != 0)
        return Error{ErrorKind::Unsupported, QStringLiteral("lossless JPEG with restarts within a row")};
    std::vector<DifferenceCodes> codes;
    unsigned named = 0;
    for (const LosslessScan::Part& part : scan->parts) {
        const auto& spec = m_tables[size_t(part.table)];
        std::optional<DifferenceCodes> found = spec ? DifferenceCodes::from(*spec) : std::nullopt;
        if (!found)
            return Error{ErrorKind::Damaged, QStringLiteral("a Huffman table is missing or wrong")};
        codes.push_back(std::move(*found));
        if (((m_decoded | named) >> part.component & 1) != 0)
            return Error{ErrorKind::Damaged, QStringLiteral("a component comes twice")};
        named |= 1U << part.component;
    }
    if (!m_canvas) {
        Status made = makeCanvas();
        if (!made)
            return made;
    }
    std::vector<const DifferenceCodes*> pointers;
    pointers.reserve(codes.size());
    for (const DifferenceCodes& code : codes)
        pointers.push_back(&code);
    LosslessScanDecoder decoder(m_bytes, segment.end, m_frame, *scan, pointers, m_interval / width);
    const auto outcome = decoder.decode(
        [&](int y, int count, const std::vector<const quint16*>& rows) {
            for (size_t i = 0; i < rows.size(); ++i)
                m_canvas->draw(scan->parts[i].component, y, count, rows[i], scan->pointTransform);
        },
        cancel);
    if (outcome.cancelled)
        return cancelledError();
    m_decoded |= named;
    m_complete = m_complete && outcome.complete;
    m_next = outcome.end;
    return ok();
}

Status Session::takeSegment(const JpegSegment& segment, const CancelFlag& cancel)
{
    const ByteSpan body = segment.body;
    m_next = segment.end;
    switch (segment.code) {
    case huffmanTables:
        if (!readHuffmanTables(body, m_tables))
            return Error{ErrorKind::Damaged, QStringLiteral("the Huffman tables are cut short or wrong")};
        return ok();
    case restartInterval:
        m_interval = body.size() >= 2 ? body[0] << 8 | body[1] : 0;
        return ok();
    case jfifSegment:
        m_jfif = m_jfif || startsWith(body, "JFIF", 5);
        return ok();
    case profileSegment:
        m_profile.take(body);
        return ok();
    case adobeSegment: {
        constexpr size_t transformAt = 11;
        if (startsWith(body, "Adobe", 5) && body.size() > transformAt)
            m_transform = body[transformAt];
        return ok();
    }
    case startOfScan:
        return takeScan(segment, cancel);
    default:
        return ok();
    }
}

Result<Picture> Session::decode(const CancelFlag& cancel)
{
    while (!isDone()) {
        const std::optional<JpegSegment> segment = nextSegment(m_bytes, m_next);
        if (!segment || segment->code == endOfImage)
            break;
        const Status taken = takeSegment(*segment, cancel);
        if (taken)
            continue;
        const bool lost = taken.error().kind == ErrorKind::Cancelled || !m_canvas || !m_canvas->drawn();
        if (lost)
            return taken.error();
        m_complete = false;
        break;
    }
    if (!m_canvas || !m_canvas->drawn())
        return nothingToShowError();
    Picture picture;
    const QByteArray profile = m_profile.profile();
    const size_t components = m_frame.components.size();
    picture.image = m_canvas->finish(components == 4 ? ColorConversion::of(profile).get() : nullptr);
    picture.fullSize = m_frame.size;
    picture.complete = m_complete && isDone();
    if (components < 4 && isProfileFor(profile, components < 3)) // four inks come out as sRGB
        picture.profile = profile;
    return picture;
}

} // namespace

LosslessJpegDecoder::LosslessJpegDecoder(std::shared_ptr<ByteSource> source, LosslessFrame frame)
    : m_source(std::move(source)), m_frame(std::move(frame))
{
}

int LosslessJpegDecoder::bitsPerPixel() const
{
    const int bytes = m_frame.precision > 8 ? 2 : 1;
    return 8 * bytes * int(m_frame.components.size());
}

Result<PageHeader> LosslessJpegDecoder::facts()
{
    return PageHeader{m_frame.size, bitsPerPixel()};
}

Result<Picture> LosslessJpegDecoder::decodePage(const PageHeader&, QSize, const CancelFlag& cancel)
{
    // No sample takes more than 32 bits, and stuffing at most doubles them; the rest is for metadata.
    constexpr qint64 mostMetadata = qint64(64) << 20;
    constexpr qint64 mostBytesPerSample = 8;
    const qint64 samples =
        qint64(m_frame.size.width()) * m_frame.size.height() * qint64(m_frame.components.size());
    const QByteArray bytes =
        m_source->bytes(0, std::min(m_source->size(), mostMetadata + samples * mostBytesPerSample));
    Session session(ByteSpan(reinterpret_cast<const uchar*>(bytes.constData()), size_t(bytes.size())),
                    m_frame);
    Result<Picture> picture = session.decode(cancel);
    if (picture)
        picture->bitsPerPixel = bitsPerPixel();
    return picture;
}

} // namespace quorvia::engine

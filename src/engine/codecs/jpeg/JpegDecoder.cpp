#include "engine/codecs/jpeg/JpegDecoder.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/jpeg/JpegErrors.h"
#include "engine/codecs/jpeg/JpegProfile.h"
#include "engine/codecs/jpeg/JpegSource.h"
#include "engine/Limits.h"

#include <QtEndian>

#include <algorithm>

namespace quorvia::engine {

namespace {

// The alpha variant has the layout of RGB32 and promises 255 in the byte that RGB32 leaves unused.
constexpr J_COLOR_SPACE rgb32Order = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRA : JCS_EXT_ARGB;

constexpr qint64 bytesPerBlock = DCTSIZE2 * sizeof(JCOEF);

/// How many scans are taken in before refining is given up: far more than an encoder writes, fewer for large
/// pictures, so that a hostile file of thousands of empty scans ends soon.
int scanLimit(qint64 blocks)
{
    constexpr qint64 blockVisits = 200'000'000;
    return static_cast<int>(std::clamp<qint64>(blockVisits / std::max<qint64>(blocks, 1), 20, 200));
}

/// Four inks to RGB, without a profile: each channel is what its ink and black both let through,
/// c = (255 - ink) * (255 - black) / 255, rounded. Adobe's files hold 255 - ink already (`inverted`).
void cmykToRgb(const JSAMPLE* in, QRgb* out, JDIMENSION count, bool inverted)
{
    const int flip = inverted ? 0 : 255;
    for (JDIMENSION x = 0; x < count; ++x, in += 4) {
        const int light = in[3] ^ flip;
        const auto channel = [light, flip](int stored) { return ((stored ^ flip) * light + 127) / 255; };
        out[x] = qRgb(channel(in[0]), channel(in[1]), channel(in[2]));
    }
}

/// The figures of the frame header that the library overwrites when it meets a second one, before it calls
/// that an error. They must be put back before it is asked for pixels.
class FrameFigures
{
  public:
    explicit FrameFigures(const jpeg_decompress_struct& info)
        : m_progressive(info.progressive_mode), m_arithmetic(info.arith_code),
          m_precision(info.data_precision), m_width(info.image_width), m_height(info.image_height),
          m_components(info.num_components)
    {
    }

    void putBack(jpeg_decompress_struct& info) const
    {
        info.progressive_mode = m_progressive;
        info.arith_code = m_arithmetic;
        info.data_precision = m_precision;
        info.image_width = m_width;
        info.image_height = m_height;
        info.num_components = m_components;
    }

  private:
    boolean m_progressive;
    boolean m_arithmetic;
    int m_precision;
    JDIMENSION m_width;
    JDIMENSION m_height;
    int m_components;
};

/// One decode under way: libjpeg's object and what hangs on it.
class Session
{
  public:
    Session(const ByteSource& bytes, const CancelFlag& cancel) : m_bytes(bytes), m_cancel(cancel)
    {
        m_info.err = m_errors.attach();
    }
    ~Session() { jpeg_destroy_decompress(&m_info); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    Result<Picture> decode(QSize box);

  private:
    template <class Step>
    bool attempt(const Step& step)
    {
        return guarded(m_errors.landing, step);
    }
    Status open();
    Status chooseOutput(QSize box);
    Status collectScans();
    QImage::Format format() const;
    ColorModel model() const;
    void readProfile();
    bool readRows(QImage& image);
    void readInto(uchar* bits, qsizetype stride);
    void lookForCancel();
    JDIMENSION usefulRows() const;

    const ByteSource& m_bytes;
    const CancelFlag& m_cancel;
    JpegErrors m_errors;
    JpegSource m_source;
    JpegProfile m_embedded;
    QByteArray m_profile;                          ///< of the pixels that are given
    std::shared_ptr<const ColorConversion> m_inks; ///< of four inks by their profile
    jpeg_decompress_struct m_info = {};
    int m_scans = 0; ///< complete ones
    int m_scanLimit = 0;
    bool m_gaveUp = false; ///< the rest of the file was not looked at
};

void Session::lookForCancel()
{
    if (m_cancel.load(std::memory_order_relaxed))
        leaveCancelled(reinterpret_cast<j_common_ptr>(&m_info));
}

Status Session::open()
{
    const bool good = attempt([this] {
        jpeg_create_decompress(&m_info);
        m_info.mem->max_memory_to_use = static_cast<long>(Limits::machine().maxBytes);
        m_info.src = m_source.attach(m_bytes, m_cancel);
        m_embedded.attach(&m_info);
        jpeg_read_header(&m_info, TRUE);
    });
    if (!good)
        return m_errors.error();
    return checkSize(QSize(static_cast<int>(m_info.image_width), static_cast<int>(m_info.image_height)));
}

Status Session::chooseOutput(QSize box)
{
    switch (m_info.jpeg_color_space) {
    case JCS_GRAYSCALE:
        m_info.out_color_space = JCS_GRAYSCALE;
        break;
    case JCS_YCbCr:
    case JCS_RGB:
        m_info.out_color_space = rgb32Order;
        break;
    case JCS_CMYK:
    case JCS_YCCK:
        m_info.out_color_space = JCS_CMYK;
        break;
    default:
        return Error{ErrorKind::Unsupported,
                     QStringLiteral("%1 colour components").arg(m_info.num_components)};
    }
    const QSize page(static_cast<int>(m_info.image_width), static_cast<int>(m_info.image_height));
    m_info.scale_num = static_cast<unsigned>(eighthsFor(page, box));
    m_info.scale_denom = 8;

    m_info.buffered_image = jpeg_has_multiple_scans(&m_info);
    if (!m_info.buffered_image)
        return ok();
    // Each block takes a bit at the least, so a file can hold 1024 times its size in coefficients. A large
    // one that promises more is not read: it would fill the memory with zeros.
    constexpr qint64 alwaysGranted = qint64(256) << 20;
    qint64 blocks = 0;
    for (int i = 0; i < m_info.num_components; ++i)
        blocks += qint64(m_info.comp_info[i].width_in_blocks) * m_info.comp_info[i].height_in_blocks;
    const qint64 coefficients = blocks * bytesPerBlock;
    if (coefficients > alwaysGranted && coefficients / (8 * bytesPerBlock) > m_bytes.size())
        return Error{ErrorKind::TooLarge, QStringLiteral("%1 bytes cannot hold %2 x %3 pixels")
                                              .arg(m_bytes.size())
                                              .arg(page.width())
                                              .arg(page.height())};
    m_scanLimit = scanLimit(blocks);
    return ok();
}

/// Takes in the scans of a file that has several. What was complete before an error is shown.
Status Session::collectScans()
{
    const FrameFigures figures(m_info);
    const bool good = attempt([this] {
        for (;;) {
            lookForCancel();
            const int state = jpeg_consume_input(&m_info);
            if (state == JPEG_SCAN_COMPLETED)
                ++m_scans;
            else if (state == JPEG_REACHED_EOI)
                return;
            if (state == JPEG_REACHED_SOS && m_scans >= m_scanLimit) {
                m_gaveUp = true;
                return;
            }
        }
    });
    if (m_errors.cancelled || (!good && m_scans == 0))
        return m_errors.error();
    m_gaveUp = m_gaveUp || !good;
    figures.putBack(m_info);
    if (!attempt([this] { jpeg_start_output(&m_info, m_scans); }))
        return m_errors.error();
    return ok();
}

QImage::Format Session::format() const
{
    return m_info.out_color_space == JCS_GRAYSCALE ? QImage::Format_Grayscale8 : QImage::Format_RGB32;
}

ColorModel Session::model() const
{
    switch (m_info.out_color_space) {
    case JCS_GRAYSCALE:
        return ColorModel::Gray;
    case JCS_CMYK:
        return ColorModel::Cmyk;
    default:
        return ColorModel::Rgb;
    }
}

/// Takes the file's profile: for four inks as what converts them, else to be handed on with the pixels.
void Session::readProfile()
{
    QByteArray profile = m_embedded.take(model());
    if (model() == ColorModel::Cmyk)
        m_inks = ColorConversion::of(profile);
    else
        m_profile = std::move(profile);
}

/// The row up to which libjpeg still has pixels of the file to give. Behind the end of the data it would fill
/// in grey; those rows stay untouched, so that a cut file of a huge picture costs no memory.
JDIMENSION Session::usefulRows() const
{
    // The arithmetic decoder takes what is missing for zeros and does not tell.
    const bool noMore = m_info.arith_code ? m_errors.fileEnded : m_errors.dataEnded;
    const bool ended = !m_info.buffered_image && noMore && m_info.unread_marker == JPEG_EOI;
    if (!ended)
        return m_info.output_height;
    // Upsampling holds rows back: up to one row of blocks and its neighbour.
    const auto heldBack = static_cast<JDIMENSION>(2 * m_info.max_v_samp_factor * m_info.min_DCT_scaled_size);
    return std::min(m_info.output_height, m_info.output_scanline + heldBack);
}

void Session::readInto(uchar* bits, qsizetype stride)
{
    constexpr JDIMENSION batch = 8;
    const bool cmyk =
        m_info.out_color_space == JCS_CMYK && !m_inks; // else they lie in the picture until all are read
    JSAMPARRAY inks = nullptr;
    if (cmyk)
        inks = m_info.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&m_info), JPOOL_IMAGE,
                                        m_info.output_width * 4, batch);
    bool ended = false;
    JDIMENSION end = m_info.output_height;
    while (m_info.output_scanline < end) {
        lookForCancel();
        const JDIMENSION first = m_info.output_scanline;
        const JDIMENSION count = std::min(batch, end - first);
        JSAMPROW rows[batch];
        for (JDIMENSION i = 0; i < count; ++i)
            rows[i] = bits + static_cast<qsizetype>(first + i) * stride;
        const JDIMENSION got = jpeg_read_scanlines(&m_info, cmyk ? inks : rows, count);
        for (JDIMENSION i = 0; cmyk && i < got; ++i)
            cmykToRgb(inks[i], reinterpret_cast<QRgb*>(rows[i]), m_info.output_width,
                      m_info.saw_Adobe_marker);
        if (!ended) {
            end = usefulRows();
            ended = end < m_info.output_height;
        }
    }
    if (!m_info.buffered_image && m_info.output_scanline == m_info.output_height)
        jpeg_finish_decompress(&m_info); // reads on to the end mark, so that a missing one is noticed
}

/// Fills `image` as far as the file goes; false when that is not to the end.
bool Session::readRows(QImage& image)
{
    uchar* const bits = image.bits();
    const qsizetype stride = image.bytesPerLine();
    const bool good = attempt([this, bits, stride] { readInto(bits, stride); });
    return good && m_info.output_scanline == m_info.output_height && m_errors.damage == 0 && !m_gaveUp;
}

Result<Picture> Session::decode(QSize box)
{
    if (const Status opened = open(); !opened)
        return opened.error();
    if (const Status chosen = chooseOutput(box); !chosen)
        return chosen.error();
    // Taken now: a second frame header behind the pixels leaves its own figures behind, although it is an
    // error.
    const QSize page(static_cast<int>(m_info.image_width), static_cast<int>(m_info.image_height));
    const int bitsPerPixel = m_info.num_components * BITS_IN_JSAMPLE;
    readProfile();
    if (!attempt([this] { jpeg_start_decompress(&m_info); }))
        return m_errors.error();
    if (m_info.buffered_image) {
        if (const Status collected = collectScans(); !collected)
            return collected.error();
    }
    const QSize size(static_cast<int>(m_info.output_width), static_cast<int>(m_info.output_height));
    QImage image = allocateImage(size, format());
    if (image.isNull())
        return noMemoryError();
    const bool complete = readRows(image);
    if (m_inks && !m_errors.cancelled)
        m_errors.cancelled = !convertInks(image, static_cast<int>(m_info.output_scanline), *m_inks,
                                          m_info.saw_Adobe_marker, m_cancel);
    if (m_errors.cancelled || m_info.output_scanline == 0)
        return m_errors.error();
    return Picture{std::move(image), page, bitsPerPixel, complete, std::move(m_profile)};
}

Status checkFrame(const JpegFrame& frame)
{
    switch (frame.process) {
    case 0:
    case 1:
    case 2:
    case 9:
    case 10:
        break;
    case 3:
    case 11:
        return unsupported(QStringLiteral("a lossless JPEG (SOF%1)").arg(frame.process));
    default:
        return unsupported(QStringLiteral("a hierarchical JPEG (SOF%1)").arg(frame.process));
    }
    if (frame.precision != BITS_IN_JSAMPLE)
        return unsupported(QStringLiteral("%1 bits a sample").arg(frame.precision));
    if (frame.components != 1 && frame.components != 3 && frame.components != 4)
        return unsupported(QStringLiteral("%1 colour components").arg(frame.components));
    if (frame.size.height() == 0)
        return unsupported(QStringLiteral("a height that stands behind the pixels (DNL)"));
    if (std::max(frame.size.width(), frame.size.height()) > JPEG_MAX_DIMENSION)
        return Error{ErrorKind::TooLarge,
                     QStringLiteral("a side of more than %1 pixels").arg(JPEG_MAX_DIMENSION)};
    return ok();
}

} // namespace

int eighthsFor(QSize page, QSize box)
{
    const QSize wanted = fittedSize(page, box);
    const auto scaled = [](int side, int eighths) { return (qint64(side) * eighths + 7) / 8; };
    for (const int eighths : {1, 2, 3, 4}) {
        if (scaled(page.width(), eighths) >= wanted.width() &&
            scaled(page.height(), eighths) >= wanted.height())
            return eighths;
    }
    return 8;
}

JpegDecoder::JpegDecoder(std::shared_ptr<ByteSource> source, const JpegFrame& frame)
    : m_source(std::move(source)), m_frame(frame)
{
}

Result<PageHeader> JpegDecoder::facts()
{
    if (const Status good = checkFrame(m_frame); !good)
        return good.error();
    return PageHeader{m_frame.size, m_frame.components * m_frame.precision};
}

Result<Picture> JpegDecoder::decodePage(const PageHeader&, QSize box, const CancelFlag& cancel)
{
    return std::make_unique<Session>(*m_source, cancel)->decode(box);
}

} // namespace quorvia::engine

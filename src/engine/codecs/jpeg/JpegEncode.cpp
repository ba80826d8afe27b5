#include "engine/codecs/jpeg/JpegEncode.h"

#include "engine/codecs/Growing.h"
#include "engine/codecs/ImageRows.h"
#include "engine/codecs/jpeg/JpegErrors.h"
#include "engine/ColorConversion.h"

#include <QtEndian>

#include <jerror.h>

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr J_COLOR_SPACE rgb32Order = Q_BYTE_ORDER == Q_LITTLE_ENDIAN ? JCS_EXT_BGRX : JCS_EXT_XRGB;

// ITU-T T.81, tables K.1 and K.2.
constexpr QuantTable annexLuminance = {16, 11, 10, 16, 24,  40,  51,  61,  12, 12, 14, 19, 26,  58,  60,  55,
                                       14, 13, 16, 24, 40,  57,  69,  56,  14, 17, 22, 29, 51,  87,  80,  62,
                                       18, 22, 37, 56, 68,  109, 103, 77,  24, 35, 55, 64, 81,  104, 113, 92,
                                       49, 64, 78, 87, 103, 121, 120, 101, 72, 92, 95, 98, 112, 100, 103, 99};
constexpr QuantTable annexChrominance = {17, 18, 24, 47, 99, 99, 99, 99, 18, 21, 26, 66, 99, 99, 99, 99,
                                         24, 26, 56, 99, 99, 99, 99, 99, 47, 66, 99, 99, 99, 99, 99, 99,
                                         99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99,
                                         99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99, 99};

struct Sampling
{
    int across;
    int down;
};
/// Luminance samples to one of chrominance, by JpegOptions::subSampling.
constexpr Sampling samplings[] = {{1, 1}, {2, 1}, {2, 2}, {1, 2}};

/// Collects what libjpeg writes.
struct Destination
{
    jpeg_destination_mgr manager = {}; ///< first, so that libjpeg's pointer to it is one to this
    QByteArray bytes;
    JOCTET buffer[65536];

    jpeg_destination_mgr* attach();
    void take(j_compress_ptr info, size_t count);
    void rewind();
};

Destination& destinationOf(j_compress_ptr info)
{
    return *reinterpret_cast<Destination*>(info->dest);
}

void Destination::take(j_compress_ptr info, size_t count)
{
    if (!appended(bytes, buffer, static_cast<qsizetype>(count)))
        ERREXIT1(info, JERR_OUT_OF_MEMORY, 0);
}

void Destination::rewind()
{
    manager.next_output_byte = buffer;
    manager.free_in_buffer = sizeof buffer;
}

jpeg_destination_mgr* Destination::attach()
{
    manager.init_destination = [](j_compress_ptr info) { destinationOf(info).rewind(); };
    manager.empty_output_buffer = [](j_compress_ptr info) -> boolean {
        destinationOf(info).take(info, sizeof buffer);
        destinationOf(info).rewind();
        return TRUE;
    };
    manager.term_destination = [](j_compress_ptr info) {
        destinationOf(info).take(info, sizeof buffer - info->dest->free_in_buffer);
    };
    return &manager;
}

/// One file under way: libjpeg's object and what hangs on it.
class Session
{
  public:
    Session() { m_info.err = m_errors.attach(); }
    ~Session() { jpeg_destroy_compress(&m_info); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    bool begin(QSize size, bool gray, J_COLOR_SPACE input, const JpegOptions& options,
               const QByteArray& profile);
    bool write(const QImage& rows);
    bool finish();
    Error error() const { return m_errors.error(); }
    QByteArray bytes() { return std::move(m_destination.bytes); }

  private:
    void setTables(const JpegOptions& options);

    JpegErrors m_errors;
    Destination m_destination;
    jpeg_compress_struct m_info = {};
};

void Session::setTables(const JpegOptions& options)
{
    constexpr int asTheyStand = 100; // percent
    const QuantTable luminance = quantTable(false, options.luminance);
    const QuantTable chrominance = quantTable(true, options.chrominance);
    jpeg_add_quant_table(&m_info, 0, luminance.data(), asTheyStand, TRUE);
    jpeg_add_quant_table(&m_info, 1, chrominance.data(), asTheyStand, TRUE);
}

bool Session::begin(QSize size, bool gray, J_COLOR_SPACE input, const JpegOptions& options,
                    const QByteArray& profile)
{
    return guarded(m_errors.landing, [&, this] {
        jpeg_create_compress(&m_info);
        m_info.dest = m_destination.attach();
        m_info.image_width = static_cast<JDIMENSION>(size.width());
        m_info.image_height = static_cast<JDIMENSION>(size.height());
        m_info.in_color_space = input;
        m_info.input_components = input == JCS_GRAYSCALE ? 1 : 4;
        jpeg_set_defaults(&m_info);
        jpeg_set_colorspace(&m_info, gray ? JCS_GRAYSCALE : JCS_YCbCr);
        m_info.optimize_coding = TRUE;
        setTables(options);
        if (!gray) {
            const Sampling sampling = samplings[std::clamp(options.subSampling, 0, 3)];
            m_info.comp_info[0].h_samp_factor = sampling.across;
            m_info.comp_info[0].v_samp_factor = sampling.down;
        }
        jpeg_start_compress(&m_info, TRUE);
        if (colorModelOf(profile) == (gray ? ColorModel::Gray : ColorModel::Rgb))
            jpeg_write_icc_profile(&m_info, reinterpret_cast<const JOCTET*>(profile.constData()),
                                   static_cast<unsigned>(profile.size()));
    });
}

bool Session::write(const QImage& rows)
{
    const uchar* const bits = rows.constBits();
    const qsizetype stride = rows.bytesPerLine();
    const int count = rows.height();
    return guarded(m_errors.landing, [this, bits, stride, count] {
        for (int y = 0; y < count; ++y) {
            JSAMPROW row = const_cast<JSAMPROW>(bits + y * stride); // libjpeg's interface; it only reads
            jpeg_write_scanlines(&m_info, &row, 1);
        }
    });
}

bool Session::finish()
{
    return guarded(m_errors.landing, [this] { jpeg_finish_compress(&m_info); });
}

bool isGrayByFormat(const QImage& image)
{
    return image.depth() <= 8 && image.format() != QImage::Format_Alpha8 && image.allGray();
}

} // namespace

QuantTable quantTable(bool chrominance, int strength)
{
    const unsigned percent = static_cast<unsigned>(std::clamp(strength, 0, 255));
    QuantTable table = chrominance ? annexChrominance : annexLuminance;
    for (unsigned& step : table)
        step = std::clamp((step * percent + 50) / 100, 1U, 255U);
    return table;
}

Result<QByteArray> encodeJpeg(const QImage& image, const JpegOptions& options, const QByteArray& profile)
{
    if (image.isNull() || std::max(image.width(), image.height()) > JPEG_MAX_DIMENSION)
        return Error{ErrorKind::Unsupported,
                     QStringLiteral("no JPEG holds %1 x %2 pixels").arg(image.width()).arg(image.height())};
    const bool colored = colorModelOf(profile) == ColorModel::Rgb; // even greys have a tint in such a space
    const bool gray = options.gray || (isGrayByFormat(image) && !colored);
    const auto conversion = gray && colored ? ColorConversion::of(profile) : nullptr;
    const bool grayRows = image.format() == QImage::Format_Grayscale8 && gray && !conversion;
    const bool alpha = image.hasAlphaChannel();
    const auto session = std::make_unique<Session>();
    if (!session->begin(image.size(), gray, grayRows ? JCS_GRAYSCALE : rgb32Order, options, profile))
        return session->error();
    const QImage::Format format = grayRows ? QImage::Format_Grayscale8
                                  : alpha  ? QImage::Format_ARGB32
                                           : QImage::Format_RGB32;
    for (int y = 0; y < image.height(); y += stripRows) {
        QImage rows = rowsAs(image, y, std::min(stripRows, image.height() - y), format);
        if (conversion)
            rows = converted(std::move(rows), *conversion);
        if (alpha)
            rows = overWhite(std::move(rows));
        if (rows.isNull())
            return Error{ErrorKind::TooLarge, QStringLiteral("no memory to write the JPEG")};
        if (!session->write(rows))
            return session->error();
    }
    if (!session->finish())
        return session->error();
    return session->bytes();
}

} // namespace quorvia::engine

#include "engine/codecs/png/PngEncode.h"

#include "engine/codecs/Growing.h"
#include "engine/codecs/Guarded.h"
#include "engine/codecs/ImageRows.h"
#include "engine/codecs/png/PngProfile.h"
#include "engine/ColorConversion.h"

#include <QtEndian>

#include <png.h>

#include <algorithm>
#include <cstring>

namespace quorvia::engine {

namespace {

constexpr bool littleEndian = Q_BYTE_ORDER == Q_LITTLE_ENDIAN;

/// How an image is stored.
struct Plan
{
    QImage::Format rows; ///< format that the rows are handed over in
    int colors;          ///< libpng's colour type
    int depth;           ///< bits a sample
    QList<QRgb> table;   ///< palette, for that colour type
};

Plan planFor(const QImage& image)
{
    switch (image.format()) {
    case QImage::Format_Mono:
    case QImage::Format_MonoLSB:
    case QImage::Format_Indexed8: {
        const bool mono = image.depth() == 1;
        QList<QRgb> table = image.colorTable();
        coverUsedEntries(table, image);
        if (mono && table == QList<QRgb>{qRgb(0, 0, 0), qRgb(255, 255, 255)})
            return {QImage::Format_Mono, PNG_COLOR_TYPE_GRAY, 1, {}};
        return {mono ? QImage::Format_Mono : QImage::Format_Indexed8, PNG_COLOR_TYPE_PALETTE, mono ? 1 : 8,
                table};
    }
    case QImage::Format_Grayscale8:
    case QImage::Format_Grayscale16:
        return {QImage::Format_Grayscale8, PNG_COLOR_TYPE_GRAY, 8, {}};
    default:
        if (image.hasAlphaChannel())
            return {QImage::Format_ARGB32, PNG_COLOR_TYPE_RGB_ALPHA, 8, {}};
        return {QImage::Format_RGB32, PNG_COLOR_TYPE_RGB, 8, {}};
    }
}

/// zlib's level. A photo of 3.4 megapixels took 269 ms at level 1 (5.75 MB), 347 at 2 (5.71), 929 at 4 (4.93)
/// and 1589 at 6 (4.95), each with libpng's choice of filters: 2 is where a person does not wait yet.
/// Palettes are a quarter of the bytes and unfiltered; there 6 costs little and gains a tenth.
int levelFor(const Plan& plan)
{
    return plan.colors == PNG_COLOR_TYPE_PALETTE || plan.depth < 8 ? 6 : 2;
}

/// One file under way: libpng's objects and what was written.
class Session
{
  public:
    Session() = default;
    ~Session() { png_destroy_write_struct(&m_png, &m_info); }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// `profile` is the content of the chunk that holds it; empty for none.
    bool begin(QSize size, const Plan& plan, const QByteArray& profile);
    bool write(const QImage& rows);
    bool finish();
    Error error() const { return Error{ErrorKind::Unsupported, QString::fromLatin1(m_landing.text)}; }
    QByteArray bytes() { return std::move(m_bytes); }

  private:
    static void takeError(png_structp png, png_const_charp message);
    static void takeBytes(png_structp png, png_bytep data, size_t count);
    void setPalette(const Plan& plan);

    Landing m_landing;
    png_structp m_png = nullptr;
    png_infop m_info = nullptr;
    QByteArray m_bytes;
};

void Session::takeError(png_structp png, png_const_charp message)
{
    auto& landing = static_cast<Session*>(png_get_error_ptr(png))->m_landing;
    std::strncpy(landing.text, message, sizeof landing.text - 1);
    std::longjmp(landing.place, 1);
}

void Session::takeBytes(png_structp png, png_bytep data, size_t count)
{
    if (!appended(static_cast<Session*>(png_get_io_ptr(png))->m_bytes, data, static_cast<qsizetype>(count)))
        png_error(png, "no memory to write the PNG");
}

/// Runs below guarded().
void Session::setPalette(const Plan& plan)
{
    png_color colors[256] = {};
    png_byte alphas[256] = {};
    int alphaCount = 0; // up to the last entry that is not opaque
    const int count = static_cast<int>(std::min<qsizetype>(plan.table.size(), 256));
    for (int i = 0; i < count; ++i) {
        const QRgb entry = plan.table.at(i);
        colors[i] = {static_cast<png_byte>(qRed(entry)), static_cast<png_byte>(qGreen(entry)),
                     static_cast<png_byte>(qBlue(entry))};
        alphas[i] = static_cast<png_byte>(qAlpha(entry));
        if (alphas[i] != 255)
            alphaCount = i + 1;
    }
    png_set_PLTE(m_png, m_info, colors, count);
    if (alphaCount > 0)
        png_set_tRNS(m_png, m_info, alphas, alphaCount, nullptr);
}

bool Session::begin(QSize size, const Plan& plan, const QByteArray& profile)
{
    const auto* const profileBytes = reinterpret_cast<png_const_bytep>(profile.constData());
    const auto profileLength = static_cast<size_t>(profile.size());
    return guarded(m_landing, [&, this] {
        m_png = png_create_write_struct(PNG_LIBPNG_VER_STRING, this, takeError,
                                        [](png_structp, png_const_charp) {});
        m_info = m_png ? png_create_info_struct(m_png) : nullptr;
        if (!m_info) {
            std::strncpy(m_landing.text, "libpng does not start", sizeof m_landing.text - 1);
            std::longjmp(m_landing.place, 1);
        }
        png_set_write_fn(m_png, this, takeBytes, nullptr);
        png_set_compression_level(m_png, levelFor(plan));
        png_set_compression_buffer_size(m_png, 65536);
        png_set_IHDR(m_png, m_info, static_cast<png_uint_32>(size.width()),
                     static_cast<png_uint_32>(size.height()), plan.depth, plan.colors, PNG_INTERLACE_NONE,
                     PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
        if (plan.colors == PNG_COLOR_TYPE_PALETTE)
            setPalette(plan);
        png_write_info_before_PLTE(m_png, m_info);
        // As it stands: the library's own way drops profiles that it finds fault with.
        if (profileLength > 0)
            png_write_chunk(m_png, reinterpret_cast<png_const_bytep>("iCCP"), profileBytes, profileLength);
        png_write_info(m_png, m_info);
        if (plan.rows == QImage::Format_RGB32)
            png_set_filler(m_png, 0, littleEndian ? PNG_FILLER_AFTER : PNG_FILLER_BEFORE);
        if (plan.colors & PNG_COLOR_MASK_COLOR && plan.colors != PNG_COLOR_TYPE_PALETTE && littleEndian)
            png_set_bgr(m_png);
        if (plan.rows == QImage::Format_ARGB32 && !littleEndian)
            png_set_swap_alpha(m_png);
    });
}

bool Session::write(const QImage& rows)
{
    const uchar* const bits = rows.constBits();
    const qsizetype stride = rows.bytesPerLine();
    const int count = rows.height();
    return guarded(m_landing, [this, bits, stride, count] {
        for (int y = 0; y < count; ++y)
            png_write_row(m_png, bits + y * stride);
    });
}

bool Session::finish()
{
    return guarded(m_landing, [this] { png_write_end(m_png, m_info); });
}

} // namespace

Result<QByteArray> encodePng(const QImage& image, const QByteArray& profile)
{
    if (image.isNull())
        return Error{ErrorKind::Unsupported, QStringLiteral("no picture to write")};
    const Plan plan = planFor(image);
    Session session;
    const ColorModel colors = plan.colors & PNG_COLOR_MASK_COLOR ? ColorModel::Rgb : ColorModel::Gray;
    const bool fits = colorModelOf(profile) == colors;
    if (!session.begin(image.size(), plan, fits ? pngProfileContent(profile) : QByteArray()))
        return session.error();
    for (int y = 0; y < image.height(); y += stripRows) {
        const QImage rows = rowsAs(image, y, std::min(stripRows, image.height() - y), plan.rows);
        if (rows.isNull())
            return Error{ErrorKind::TooLarge, QStringLiteral("no memory to write the PNG")};
        if (!session.write(rows))
            return session.error();
    }
    if (!session.finish())
        return session.error();
    return session.bytes();
}

} // namespace quorvia::engine

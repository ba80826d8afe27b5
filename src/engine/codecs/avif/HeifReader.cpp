#include "engine/codecs/avif/HeifReader.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/ColorConversion.h"
#include "engine/Limits.h"

#include <QtEndian>

#include <algorithm>
#include <new>
#include <utility>

namespace quorvia::engine {

namespace {

/// Runs `call`, which calls the library: it is C++ inside, and lets exceptions through.
template <class Call>
heif_error called(const Call& call)
{
    try {
        return call();
    } catch (const std::bad_alloc&) {
        return {heif_error_Memory_allocation_error, heif_suberror_Unspecified, "no memory"};
    } catch (...) {
        return {heif_error_Invalid_input, heif_suberror_Unspecified, "libheif gave up"};
    }
}

Error errorOf(const heif_error& error)
{
    QString text = QString::fromUtf8(error.message ? error.message : "");
    if (text.isEmpty())
        text = QStringLiteral("libheif gives no picture");
    if (error.code == heif_error_Memory_allocation_error)
        return Error{ErrorKind::TooLarge, text};
    if (error.code == heif_error_Unsupported_feature || error.code == heif_error_Unsupported_filetype)
        return Error{ErrorKind::Unsupported, text};
    return Error{ErrorKind::Damaged, text};
}

Error otherSizeError()
{
    return Error{ErrorKind::Damaged, QStringLiteral("the picture has not the size that its header told")};
}

heif_chroma chromaOf(bool alpha, bool deep)
{
    if (deep)
        return alpha ? heif_chroma_interleaved_RRGGBBAA_LE : heif_chroma_interleaved_RRGGBB_LE;
    return alpha ? heif_chroma_interleaved_RGBA : heif_chroma_interleaved_RGB;
}

/// How the samples of a decoded picture lie.
struct Samples
{
    int channels = 3; ///< 4 with alpha
    int bytes = 1;    ///< of a sample, the lower one first
    uint most = 255;  ///< the value of white
    bool premultiplied = false;
};

uint sampleAt(const uchar* pixel, int channel, const Samples& samples)
{
    const uint value = samples.bytes == 1 ? pixel[channel] : qFromLittleEndian<quint16>(pixel + 2 * channel);
    return std::min(value, samples.most);
}

/// `value` of `whole` in 8 bits, rounded; a value beyond the whole is the whole.
int eightBits(uint value, uint whole)
{
    return whole == 0 ? 0 : int(std::min((value * 255 + whole / 2) / whole, 255U));
}

/// One row of plain bytes to QRgb: nearly every picture.
void copyBytes(const uchar* in, QRgb* out, int width, int channels)
{
    for (int x = 0; x < width; ++x, in += channels)
        out[x] = qRgba(in[0], in[1], in[2], channels == 4 ? in[3] : 255);
}

/// One row of `samples` to QRgb, not premultiplied.
void copyRow(const uchar* in, QRgb* out, int width, const Samples& samples)
{
    if (samples.bytes == 1 && !samples.premultiplied)
        return copyBytes(in, out, width, samples.channels);
    for (int x = 0; x < width; ++x, in += samples.channels * samples.bytes) {
        const uint alpha = samples.channels == 4 ? sampleAt(in, 3, samples) : samples.most;
        const uint whole = samples.premultiplied ? alpha : samples.most;
        out[x] = qRgba(eightBits(sampleAt(in, 0, samples), whole), eightBits(sampleAt(in, 1, samples), whole),
                       eightBits(sampleAt(in, 2, samples), whole), eightBits(alpha, samples.most));
    }
}

} // namespace

HeifReader::HeifReader(const HeifLibrary& library, QByteArray file)
    : m_library(library), m_file(std::move(file)), m_context(nullptr, library.context_free),
      m_picture(nullptr, library.image_handle_release)
{
}

Result<std::unique_ptr<HeifReader>> HeifReader::open(QByteArray file)
{
    const HeifLibrary* library = HeifLibrary::get();
    if (!library)
        return Error{ErrorKind::Unsupported,
                     QStringLiteral("libheif, which reads AVIF and HEIF, is not installed")};
    std::unique_ptr<HeifReader> reader(new HeifReader(*library, std::move(file)));
    const Status done = reader->readBoxes();
    if (!done)
        return done.error();
    return reader;
}

Status HeifReader::readBoxes()
{
    heif_error error = called([this] {
        m_context.reset(m_library.context_alloc());
        if (!m_context)
            throw std::bad_alloc();
        m_library.context_set_maximum_image_size_limit(m_context.get(), Limits::machine().maxSide);
        return m_library.context_read_from_memory_without_copy(m_context.get(), m_file.constData(),
                                                               size_t(m_file.size()), nullptr);
    });
    if (error.code != heif_error_Ok)
        return errorOf(error);
    error = called([this] {
        heif_image_handle* picture = nullptr;
        const heif_error got = m_library.context_get_primary_image_handle(m_context.get(), &picture);
        m_picture.reset(picture);
        return got;
    });
    if (error.code != heif_error_Ok || !m_picture)
        return errorOf(error);
    return ok();
}

QSize HeifReader::size() const
{
    return QSize(m_library.image_handle_get_width(m_picture.get()),
                 m_library.image_handle_get_height(m_picture.get()));
}

bool HeifReader::hasAlpha() const
{
    return m_library.image_handle_has_alpha_channel(m_picture.get()) != 0;
}

int HeifReader::bits() const
{
    const int told = m_library.image_handle_get_luma_bits_per_pixel(m_picture.get());
    return told > 0 ? told : 8;
}

QByteArray HeifReader::profile() const
{
    const size_t length = m_library.image_handle_get_raw_color_profile_size(m_picture.get());
    if (length == 0 || length > size_t(maxProfileBytes))
        return {};
    QByteArray profile(qsizetype(length), '\0');
    const heif_error error = m_library.image_handle_get_raw_color_profile(m_picture.get(), profile.data());
    return error.code == heif_error_Ok ? profile : QByteArray();
}

Result<QImage> HeifReader::decode(const CancelFlag& cancel) const
{
    if (cancel)
        return cancelledError();
    std::unique_ptr<heif_image, decltype(&::heif_image_release)> image(nullptr, m_library.image_release);
    const heif_error error = called([&] {
        heif_image* decoded = nullptr;
        const heif_error got = m_library.decode_image(m_picture.get(), &decoded, heif_colorspace_RGB,
                                                      chromaOf(hasAlpha(), bits() > 8), nullptr);
        image.reset(decoded);
        return got;
    });
    if (cancel)
        return cancelledError();
    if (error.code != heif_error_Ok || !image)
        return errorOf(error);
    return copied(*image, cancel);
}

Result<QImage> HeifReader::copied(const heif_image& image, const CancelFlag& cancel) const
{
    constexpr heif_channel plane = heif_channel_interleaved;
    const bool alpha = hasAlpha();
    const QSize size(m_library.image_get_width(&image, plane), m_library.image_get_height(&image, plane));
    if (size != this->size())
        return otherSizeError();
    const int bits = m_library.image_get_bits_per_pixel_range(&image, plane);
    int stride = 0;
    const uchar* rows = m_library.image_get_plane_readonly(&image, plane, &stride);
    const bool deep = m_library.image_get_chroma_format(&image) == chromaOf(alpha, true);
    const Samples samples = {alpha ? 4 : 3, deep ? 2 : 1, deep ? (1U << std::clamp(bits, 1, 16)) - 1 : 255U,
                             alpha && m_library.image_handle_is_premultiplied_alpha(m_picture.get()) != 0};
    if (!rows || qint64(stride) < qint64(size.width()) * samples.channels * samples.bytes ||
        (!deep && m_library.image_get_chroma_format(&image) != chromaOf(alpha, false)))
        return Error{ErrorKind::Damaged, QStringLiteral("libheif gives no pixels")};
    QImage result = allocateImage(size, alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    if (result.isNull())
        return noMemoryError();
    for (int y = 0; y < size.height() && !cancel; ++y)
        copyRow(rows + qint64(y) * stride, reinterpret_cast<QRgb*>(result.scanLine(y)), size.width(),
                samples);
    if (cancel)
        return cancelledError();
    return result;
}

} // namespace quorvia::engine

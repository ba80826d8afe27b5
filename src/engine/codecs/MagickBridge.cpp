#include "engine/codecs/MagickBridge.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Guarded.h"
#include "engine/codecs/MagickLibrary.h"
#include "engine/Limits.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

namespace quorvia::engine {

namespace {

/// The call under way on this thread, for the library's callbacks.
thread_local Landing* currentLanding = nullptr;
thread_local const CancelFlag* currentCancel = nullptr;

/// Lack of memory for its own small things: the library cannot go on, its handler must not return.
__attribute__((noreturn)) void leaveCall(const ExceptionType, const char* reason, const char*)
{
    if (!currentLanding)
        std::abort();
    std::snprintf(currentLanding->text, sizeof currentLanding->text, "%s", reason ? reason : "");
    std::longjmp(currentLanding->place, 1);
}

MagickPassFail tellProgress(const char*, const magick_int64_t, const magick_uint64_t, ExceptionInfo*)
{
    return currentCancel && *currentCancel ? MagickFail : MagickPass;
}

/// Makes a flag the one that the library's progress looks at, for as long as the object lives.
class CancelScope
{
  public:
    explicit CancelScope(const CancelFlag& cancel) { currentCancel = &cancel; }
    ~CancelScope() { currentCancel = nullptr; }
    CancelScope(const CancelScope&) = delete;
    CancelScope& operator=(const CancelScope&) = delete;
};

/// Runs `step`, which calls the library; false when the library gave up for good.
template <class Step>
bool called(Landing& landing, const Step& step)
{
    currentLanding = &landing;
    const bool done = guarded(landing, step);
    currentLanding = nullptr;
    return done;
}

/// One call's settings, messages and image; frees them.
class Call
{
  public:
    explicit Call(const MagickLibrary& magick) : m_magick(magick) { magick.GetExceptionInfo(&m_exception); }
    ~Call()
    {
        if (image)
            m_magick.DestroyImageList(image);
        if (info)
            m_magick.DestroyImageInfo(info);
        m_magick.DestroyExceptionInfo(&m_exception);
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    ExceptionInfo* exception() { return &m_exception; }
    bool failed() const { return m_exception.severity >= ErrorException; }
    Error error() const;

    ImageInfo* info = nullptr;
    Image* image = nullptr;

  private:
    const MagickLibrary& m_magick;
    ExceptionInfo m_exception = {};
};

Error Call::error() const
{
    QString text = QString::fromLocal8Bit(m_exception.reason ? m_exception.reason : "");
    if (text.isEmpty())
        text = QStringLiteral("GraphicsMagick gives no picture");
    const int kind = m_exception.severity - ErrorException;
    if (kind == ResourceLimitBase)
        return Error{ErrorKind::TooLarge, text};
    if (kind == CoderBase || kind == MissingDelegateBase || kind == DelegateBase)
        return Error{ErrorKind::Unsupported, text};
    return Error{ErrorKind::Damaged, text};
}

Error noLibrary()
{
    return Error{ErrorKind::Unsupported,
                 QStringLiteral("GraphicsMagick, which reads this, is not installed")};
}

constexpr const char* formatName = "HEIF";
/// Without it the reader decodes the picture to tell its size, which it knows turned and cropped already.
constexpr const char* headerOnly = "heif:ignore-transformations=TRUE";

enum class Mode { Ping, Read };

/// Lets the library read `file` into `call`.
Status run(const MagickLibrary& magick, Call& call, Mode mode, const QByteArray& file)
{
    Landing landing;
    const bool done = called(landing, [&] {
        call.info = magick.CloneImageInfo(nullptr);
        // The prefix of the file name, with no name behind it, is what keeps the library from looking at the
        // content: the format alone would be overruled by a mark of another.
        std::strncpy(call.info->magick, formatName, sizeof call.info->magick - 1);
        std::snprintf(call.info->filename, sizeof call.info->filename, "%s:", formatName);
        if (mode == Mode::Ping)
            magick.AddDefinitions(call.info, headerOnly, call.exception());
        const auto read = mode == Mode::Ping ? magick.PingBlob : magick.BlobToImage;
        call.image = read(call.info, file.constData(), size_t(file.size()), call.exception());
    });
    if (!done)
        return Error{ErrorKind::TooLarge, QString::fromLocal8Bit(landing.text)};
    if (!call.image)
        return call.error();
    return ok();
}

QSize sizeOf(const Image& image)
{
    constexpr unsigned long most = 0x7FFFFFFF;
    return QSize(int(std::min(image.columns, most)), int(std::min(image.rows, most)));
}

int eightBits(Quantum sample)
{
    return (sample + 128) / 257; // v * 255 / 65535, rounded
}

/// The pixels of `image`; where it has no alpha the library's opacity says nothing.
QImage pixelsOf(const MagickLibrary& magick, const Image& image, const CancelFlag& cancel)
{
    const bool alpha = image.matte;
    QImage result = allocateImage(sizeOf(image), alpha ? QImage::Format_ARGB32 : QImage::Format_RGB32);
    Call call(magick);
    for (int y = 0; y < result.height() && !cancel; ++y) {
        const PixelPacket* in = nullptr;
        Landing landing;
        const bool done = called(landing, [&] {
            in = magick.AcquireImagePixels(&image, 0, y, image.columns, 1, call.exception());
        });
        if (!done || !in)
            return {};
        auto* out = reinterpret_cast<QRgb*>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            const int opacity = alpha ? eightBits(in[x].opacity) : 0;
            out[x] =
                qRgba(eightBits(in[x].red), eightBits(in[x].green), eightBits(in[x].blue), 255 - opacity);
        }
    }
    return result;
}

} // namespace

MagickLibrary::Callbacks MagickLibrary::callbacks()
{
    return {leaveCall, tellProgress};
}

Result<MagickFacts> pingWithMagick(const QByteArray& file)
{
    const MagickLibrary* magick = MagickLibrary::get();
    if (!magick)
        return noLibrary();
    Call call(*magick);
    const Status done = run(*magick, call, Mode::Ping, file);
    if (!done)
        return done.error();
    return MagickFacts{sizeOf(*call.image), call.image->matte != 0};
}

Result<MagickPicture> readWithMagick(const QByteArray& file, const CancelFlag& cancel)
{
    const MagickLibrary* magick = MagickLibrary::get();
    if (!magick)
        return noLibrary();
    const CancelScope scope(cancel);
    Call call(*magick);
    const Status done = run(*magick, call, Mode::Read, file);
    if (cancel)
        return cancelledError();
    if (!done)
        return done.error();
    const Status allowed = checkMagickSize(sizeOf(*call.image));
    if (!allowed)
        return allowed.error();
    MagickPicture picture;
    picture.image = pixelsOf(*magick, *call.image, cancel);
    if (cancel)
        return cancelledError();
    if (picture.image.isNull())
        return noMemoryError();
    picture.complete = !call.failed();
    size_t length = 0;
    const unsigned char* profile = magick->GetImageProfile(call.image, "ICM", &length);
    if (profile)
        picture.profile = QByteArray(reinterpret_cast<const char*>(profile), qsizetype(length));
    return picture;
}

Status checkMagickSize(QSize size)
{
    constexpr qint64 bytesPerPixel = 16; // the library's 8, the reader's 4 and those of the picture
    const Limits& limits = Limits::machine();
    Status allowed = checkSize(size, limits);
    if (!allowed)
        return allowed;
    Limits tighter = limits;
    tighter.maxBytes = limits.maxBytes * 4 / bytesPerPixel;
    return checkSize(size, tighter);
}

Result<QByteArray> readForMagick(const ByteSource& source)
{
    constexpr qint64 longest = qint64(1) << 30;
    if (source.size() > std::min(longest, Limits::machine().maxBytes / 4))
        return Error{ErrorKind::TooLarge, QStringLiteral("a file of %1 bytes").arg(source.size())};
    try {
        return source.bytes(0, source.size());
    } catch (const std::bad_alloc&) {
        return noMemoryError();
    }
}

} // namespace quorvia::engine

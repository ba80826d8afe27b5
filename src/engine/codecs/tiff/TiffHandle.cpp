#include "engine/codecs/tiff/TiffHandle.h"

#include "engine/Limits.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>

namespace quorvia::engine {

namespace {

class SourceStream final : public TiffStream
{
  public:
    explicit SourceStream(std::shared_ptr<ByteSource> source) : m_source(std::move(source)) {}

    qint64 size() const override { return m_source->size(); }
    qint64 read(qint64 offset, void* out, qint64 length) override
    {
        return m_source->read(offset, out, length);
    }
    qint64 write(qint64, const void*, qint64) override { return -1; }

  private:
    std::shared_ptr<ByteSource> m_source;
};

class BufferStream final : public TiffStream
{
  public:
    explicit BufferStream(QByteArray& buffer) : m_buffer(buffer) {}

    qint64 size() const override { return m_buffer.size(); }

    qint64 read(qint64 offset, void* out, qint64 length) override
    {
        const qint64 count = std::clamp<qint64>(m_buffer.size() - offset, 0, length);
        std::memcpy(out, m_buffer.constData() + offset, size_t(count));
        return count;
    }

    qint64 write(qint64 offset, const void* bytes, qint64 length) override
    {
        try { // libtiff's frames are below
            if (offset + length > m_buffer.size())
                m_buffer.resize(offset + length, '\0');
        } catch (const std::bad_alloc&) {
            return -1;
        }
        std::memcpy(m_buffer.data() + offset, bytes, size_t(length));
        return length;
    }

  private:
    QByteArray& m_buffer;
};

struct OptionsDeleter
{
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

int closeNothing(thandle_t)
{
    return 0;
}

} // namespace

std::unique_ptr<TiffHandle> TiffHandle::reading(std::shared_ptr<ByteSource> source)
{
    // h: no directory yet; m: no memory mapping; c: strips stay as the file has them.
    return std::unique_ptr<TiffHandle>(
        new TiffHandle(std::make_unique<SourceStream>(std::move(source)), "rhmc"));
}

std::unique_ptr<TiffHandle> TiffHandle::writing(QByteArray& out)
{
    return std::unique_ptr<TiffHandle>(new TiffHandle(std::make_unique<BufferStream>(out), "wl"));
}

TiffHandle::TiffHandle(std::unique_ptr<TiffStream> stream, const char* mode) : m_stream(std::move(stream))
{
    const std::unique_ptr<TIFFOpenOptions, OptionsDeleter> options(TIFFOpenOptionsAlloc());
    if (!options)
        return;
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), tmsize_t(Limits::machine().maxBytes));
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), noteError, this);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), dropWarning, this);
    m_tiff = TIFFClientOpenExt("", mode, this, readBytes, writeBytes, seek, closeNothing, sizeOf, nullptr,
                               nullptr, options.get());
}

TiffHandle::~TiffHandle()
{
    if (m_tiff)
        TIFFClose(m_tiff);
}

QString TiffHandle::lastError() const
{
    return QString::fromLocal8Bit(m_lastError);
}

tmsize_t TiffHandle::readBytes(thandle_t handle, void* out, tmsize_t length)
{
    TiffHandle& self = of(handle);
    const qint64 got = self.m_stream->read(self.m_offset, out, length);
    self.m_offset += got;
    return got;
}

tmsize_t TiffHandle::writeBytes(thandle_t handle, void* bytes, tmsize_t length)
{
    TiffHandle& self = of(handle);
    const qint64 put = self.m_stream->write(self.m_offset, bytes, length);
    self.m_offset += std::max<qint64>(put, 0);
    return put;
}

toff_t TiffHandle::seek(thandle_t handle, toff_t offset, int whence)
{
    TiffHandle& self = of(handle);
    qint64 base = 0;
    if (whence == SEEK_CUR)
        base = self.m_offset;
    else if (whence == SEEK_END)
        base = self.m_stream->size();
    const qint64 target = qint64(quint64(base) + offset); // offsets from a broken file may be anything
    if (target < 0)
        return toff_t(-1);
    self.m_offset = target;
    return toff_t(target);
}

toff_t TiffHandle::sizeOf(thandle_t handle)
{
    return toff_t(of(handle).m_stream->size());
}

int TiffHandle::noteError(TIFF*, void* user, const char* module, const char* format, va_list arguments)
{
    auto* self = static_cast<TiffHandle*>(user);
    char* text = self->m_lastError;
    int length = 0;
    if (module && *module)
        length = std::snprintf(text, sizeof self->m_lastError, "%s: ", module);
    length = std::clamp(length, 0, int(sizeof self->m_lastError) - 1);
    std::vsnprintf(text + length, sizeof self->m_lastError - size_t(length), format, arguments);
    ++self->m_errors;
    return 1; // handled: the process-wide handler stays out of it
}

int TiffHandle::dropWarning(TIFF*, void*, const char*, const char*, va_list)
{
    return 1;
}

} // namespace quorvia::engine

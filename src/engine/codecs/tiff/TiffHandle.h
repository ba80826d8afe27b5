// A libtiff handle over a byte source or a buffer. Its errors and warnings stay with it: nothing is printed.
#pragma once

#include "engine/ByteSource.h"

#include <QByteArray>
#include <QString>

#include <tiffio.h>

#include <memory>

namespace quorvia::engine {

/// What libtiff reads from or writes to.
class TiffStream
{
  public:
    virtual ~TiffStream() = default;
    virtual qint64 size() const = 0;
    virtual qint64 read(qint64 offset, void* out, qint64 length) = 0;
    virtual qint64 write(qint64 offset, const void* bytes, qint64 length) = 0;
};

class TiffHandle
{
  public:
    /// Opens `source` for reading; get() is null when its first bytes are no TIFF header. No directory is
    /// read.
    static std::unique_ptr<TiffHandle> reading(std::shared_ptr<ByteSource> source);
    /// Opens a new little-endian file that is written to `out`, which must outlive the handle.
    static std::unique_ptr<TiffHandle> writing(QByteArray& out);

    ~TiffHandle();
    TiffHandle(const TiffHandle&) = delete;
    TiffHandle& operator=(const TiffHandle&) = delete;

    TIFF* get() const { return m_tiff; }
    /// Errors (not warnings) so far.
    int errorCount() const { return m_errors; }
    /// The last of them, one line; never empty.
    QString lastError() const;

  private:
    TiffHandle(std::unique_ptr<TiffStream> stream, const char* mode);

    static TiffHandle& of(thandle_t handle) { return *static_cast<TiffHandle*>(handle); }
    static tmsize_t readBytes(thandle_t handle, void* out, tmsize_t length);
    static tmsize_t writeBytes(thandle_t handle, void* bytes, tmsize_t length);
    static toff_t seek(thandle_t handle, toff_t offset, int whence);
    static toff_t sizeOf(thandle_t handle);
    static int noteError(TIFF* tiff, void* user, const char* module, const char* format, va_list arguments);
    static int dropWarning(TIFF* tiff, void* user, const char* module, const char* format, va_list arguments);

    std::unique_ptr<TiffStream> m_stream;
    qint64 m_offset = 0;
    int m_errors = 0;
    char m_lastError[512] = "the TIFF data is damaged"; ///< filled below C frames: nothing there may throw
    TIFF* m_tiff = nullptr;
};

} // namespace quorvia::engine

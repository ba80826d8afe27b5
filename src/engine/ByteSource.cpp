#include "engine/ByteSource.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstring>

namespace quorvia::engine {

namespace {

class FileSource final : public ByteSource
{
  public:
    FileSource(int descriptor, qint64 size) : m_descriptor(descriptor), m_size(size) {}
    ~FileSource() override { ::close(m_descriptor); }
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    qint64 size() const override { return m_size; }

    qint64 read(qint64 offset, void* out, qint64 length) const override
    {
        if (offset < 0 || length <= 0)
            return 0;
        qint64 done = 0;
        while (done < length) {
            const ssize_t got = ::pread(m_descriptor, static_cast<char*>(out) + done,
                                        static_cast<size_t>(length - done), offset + done);
            if (got < 0 && errno == EINTR)
                continue;
            if (got < 0)
                m_failed = true;
            if (got <= 0)
                break;
            done += got;
        }
        return done;
    }

    bool failed() const override { return m_failed; }

  private:
    int m_descriptor;
    qint64 m_size;
    mutable std::atomic<bool> m_failed = false;
};

class MemorySource final : public ByteSource
{
  public:
    explicit MemorySource(QByteArray bytes) : m_bytes(std::move(bytes)) {}

    qint64 size() const override { return m_bytes.size(); }

    qint64 read(qint64 offset, void* out, qint64 length) const override
    {
        if (offset < 0 || length <= 0 || offset >= m_bytes.size())
            return 0;
        const qint64 count = std::min<qint64>(length, m_bytes.size() - offset);
        std::memcpy(out, m_bytes.constData() + offset, static_cast<size_t>(count));
        return count;
    }

  private:
    QByteArray m_bytes;
};

class WindowSource final : public ByteSource
{
  public:
    WindowSource(std::shared_ptr<const ByteSource> source, qint64 offset, qint64 length)
        : m_source(std::move(source)), m_offset(std::clamp<qint64>(offset, 0, m_source->size())),
          m_size(std::clamp<qint64>(length, 0, m_source->size() - m_offset))
    {
    }

    qint64 size() const override { return m_size; }

    qint64 read(qint64 offset, void* out, qint64 length) const override
    {
        if (offset < 0 || offset >= m_size)
            return 0;
        return m_source->read(m_offset + offset, out, std::min(length, m_size - offset));
    }

    bool failed() const override { return m_source->failed(); }

  private:
    std::shared_ptr<const ByteSource> m_source;
    qint64 m_offset;
    qint64 m_size;
};

} // namespace

ByteSource::~ByteSource() = default;

Result<std::shared_ptr<ByteSource>> ByteSource::open(const QString& path)
{
    // O_NONBLOCK: a named pipe must not hold us up before we know that it is one.
    const int descriptor = ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        const int cause = errno;
        const bool missing = cause == ENOENT || cause == ENOTDIR;
        return Error{missing ? ErrorKind::NotFound : ErrorKind::Unreadable,
                     QString::fromLocal8Bit(std::strerror(cause))};
    }
    struct stat facts = {};
    if (::fstat(descriptor, &facts) != 0 || !S_ISREG(facts.st_mode)) {
        ::close(descriptor);
        return Error{ErrorKind::Unreadable, QStringLiteral("not a regular file")};
    }
    return std::shared_ptr<ByteSource>(std::make_shared<FileSource>(descriptor, facts.st_size));
}

std::shared_ptr<ByteSource> ByteSource::fromBytes(QByteArray bytes)
{
    return std::make_shared<MemorySource>(std::move(bytes));
}

std::shared_ptr<ByteSource> ByteSource::window(std::shared_ptr<const ByteSource> source, qint64 offset,
                                               qint64 length)
{
    return std::make_shared<WindowSource>(std::move(source), offset, length);
}

QByteArray ByteSource::bytes(qint64 offset, qint64 length) const
{
    const qint64 count = std::clamp<qint64>(size() - offset, 0, std::max<qint64>(length, 0));
    QByteArray result(count, Qt::Uninitialized);
    result.truncate(read(offset, result.data(), count));
    return result;
}

} // namespace quorvia::engine

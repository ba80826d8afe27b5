// The bytes of one image file, read by offset. Not memory-mapped: a mapped file that another program cuts
// short ends the process. Cheap to open (one open, one stat); reading costs what it reads.
#pragma once

#include "engine/Result.h"

#include <QByteArray>
#include <QString>

#include <memory>

namespace quorvia::engine {

class ByteSource
{
  public:
    /// Opens `path` (native path). NotFound when there is nothing of that name, Unreadable when it does not
    /// open or is anything but a regular file.
    static Result<std::shared_ptr<ByteSource>> open(const QString& path);
    /// A source over bytes in memory.
    static std::shared_ptr<ByteSource> fromBytes(QByteArray bytes);
    /// The part of `source` from `offset` on, `length` bytes at most, as a source of its own. Copies nothing.
    static std::shared_ptr<ByteSource> window(std::shared_ptr<const ByteSource> source, qint64 offset,
                                              qint64 length);

    virtual ~ByteSource();

    /// Length in bytes when the source was opened.
    virtual qint64 size() const = 0;
    /// Reads up to `length` bytes at `offset` (bytes, from 0) into `out`; returns how many were there (0 at
    /// or past the end, and on a read error). Safe from several threads at once.
    virtual qint64 read(qint64 offset, void* out, qint64 length) const = 0;
    /// True once a read has met an error: what looked like the end of the file was none.
    virtual bool failed() const { return false; }

    /// Up to `length` bytes from `offset`; shorter at the end.
    QByteArray bytes(qint64 offset, qint64 length) const;
};

} // namespace quorvia::engine

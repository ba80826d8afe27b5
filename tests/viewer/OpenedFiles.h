// Writes down which files a loader opens for decoding.
#pragma once

#include "engine/ByteSource.h"
#include "engine/ImageLoader.h"

#include <QFileInfo>
#include <QStringList>

#include <mutex>

namespace quorvia::test {

class OpenedFiles
{
  public:
    /// A loader that opens files as any other, with two processors. This object outlives it.
    std::shared_ptr<engine::ImageLoader> loader()
    {
        const auto open = [this](const QString& path) {
            note(path);
            return engine::openDecoder(*engine::ByteSource::open(path), QFileInfo(path).suffix());
        };
        return std::make_shared<engine::ImageLoader>(open, 2);
    }

    /// The base names so far, one for each time that a file was opened.
    QStringList names() const
    {
        const std::lock_guard lock(m_mutex);
        return m_names;
    }

  private:
    void note(const QString& path)
    {
        const std::lock_guard lock(m_mutex);
        m_names.append(QFileInfo(path).completeBaseName());
    }

    mutable std::mutex m_mutex;
    QStringList m_names;
};

} // namespace quorvia::test

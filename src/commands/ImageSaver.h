// Writes the current image to a file and opens it from there. What a save replaces lies in the trash
// afterwards, unless this session wrote it itself. As dear as encoding the image and opening the file.
#pragma once

#include "engine/ImageLoader.h"

#include <QHash>
#include <QString>

#include <functional>

class QWidget;

namespace quorvia::engine {
class ImageEngine;
}

namespace quorvia::commands {

class ImageSaver
{
  public:
    /// All of the functions are called.
    struct Sinks
    {
        QWidget* owner = nullptr; ///< of the dialog; may be null
        engine::ImageEngine* ix1 = nullptr;
        std::function<void()> redraw; ///< places and paints the image in pContain
        std::function<void(const QString& path)> openX;
        std::function<void(const QString& path)> written; ///< the file has a new content
        std::function<void(const QString& caption)> setCaption;
        std::function<void()> updateToolbar;
    };

    explicit ImageSaver(Sinks sinks);

    /// Writes the image that `ix1` holds to `path` (native) in the format of its extension, and opens it from
    /// there. Nothing happens for an empty `path`, nor, unless `force`, for an image without a file. When it
    /// cannot be written, the image stays as it is and an old file goes to the trash; one that is read-only
    /// stays, one of which more may be lost than the trash took, and one for whose name there is no format.
    void SaveImage(const QString& path, bool force);
    /// Asks for a name (`miSave`), with that of the current file in the line, and saves under it; as a bitmap
    /// when there is no other format of that name.
    void saveAs();

  private:
    bool mayReplace(const QString& path, QString& withoutCopy) const;
    bool write(const QString& path);
    void takeAway(const QString& path, const QString& why) const;

    Sinks m_sinks;
    QHash<QString, engine::PageKey> m_own; ///< of what was saved last, by path
};

} // namespace quorvia::commands

// Reads pictures at small sizes, each by the cheapest decode, on one thread of its own that stands back
// behind everybody else; on request it saves what it scaled. Asking costs nothing; nobody waits.
#pragma once

#include "engine/Codec.h"

#include <functional>
#include <memory>

namespace quorvia::engine {

/// A picture that is wanted small. All colours come in sRGB, on white where the file is transparent.
struct SmallPicture
{
    QString path;
    QSize box; ///< pixels; what is decoded covers the picture fitted into it. Empty: every pixel is decoded
    /// The pixels that a page of so many is scaled to. Called on the reader's thread.
    std::function<QSize(QSize page)> sizeFor;
    /// Where the scaled picture is put as a JPEG of high quality, through another name beside it; empty for
    /// nowhere. A picture that is not complete is not put anywhere. A failure to write passes without a word.
    QString saveTo;
};

/// What was read. The image is Grayscale8, RGB32 or Indexed8.
struct SmallImage
{
    QImage image;
    QSize page; ///< size of the page in pixels
};

/// Reads page 1 of a picture on the calling thread.
Result<SmallImage> readSmall(const SmallPicture& picture, const CancelFlag& cancel);

/// What an asker holds. When the last hold goes, the picture is not read any more.
class SmallRead
{
  public:
    virtual ~SmallRead();
    /// True when the picture has been read or has failed. Never waits.
    virtual bool isDone() const = 0;
    /// The picture once it is done; a null image before and after a failure.
    virtual SmallImage result() const = 0;
};

class SmallPictureReader
{
  public:
    SmallPictureReader();
    /// Waits for the thread; a decode under way ends at its next look at its flag.
    ~SmallPictureReader();
    SmallPictureReader(const SmallPictureReader&) = delete;
    SmallPictureReader& operator=(const SmallPictureReader&) = delete;

    /// Reads `picture` after all that was asked for before; with `first` ahead of what has not begun. Where
    /// the machine has no thread left it is read before this returns.
    std::shared_ptr<SmallRead> ask(const SmallPicture& picture, bool first = false);

  private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace quorvia::engine

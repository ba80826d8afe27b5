// Loads pictures on threads of its own, so that start-up and decoding overlap and a full decode follows while
// the user already looks. One loader serves all ImageEngine instances; it outlives them. Needs no application
// object, so that main can begin a load before the toolkit is up. Reads neighbours ahead while it is idle.
#pragma once

#include "engine/Codec.h"

#include <functional>
#include <memory>

namespace quorvia::engine {

/// What identifies the content of a page: a changed file is another picture.
struct PageKey
{
    QString path;
    int page = 1;
    qint64 size = -1;    ///< bytes
    qint64 modified = 0; ///< last written, nanoseconds since the epoch

    /// The key of the file as it is now; size -1 when it cannot be looked at.
    static PageKey of(const QString& path, int page);
    bool operator==(const PageKey&) const = default;
};

/// One asker's hold on a load under way or done. Several askers may share the work; each has a hold of its
/// own, and dropping or cancelling one leaves the others untouched. All members may be called from any
/// thread. The waits return at once when the answer is there.
class ImageLoad
{
  public:
    virtual ~ImageLoad();

    virtual const PageKey& key() const = 0;
    /// Waits for the header (milliseconds at most on a local file). The failure when the page cannot be
    /// loaded at all.
    virtual Result<PageHeader> header() = 0;
    /// Waits for the first picture: it covers the box that the load was asked for, or is the full one.
    virtual Result<Picture> first() = 0;
    /// Waits for the picture with every pixel; decodes it first when nobody asked yet.
    virtual Result<Picture> full() = 0;
    /// The full picture when it is there already, else an empty Picture. Never waits.
    virtual Picture fullIfReady() = 0;
    /// Lets the full decode begin after the first picture, in the background.
    virtual void requestFull() = 0;
    /// Gives up this hold: its waits give Cancelled from now on. When no other hold is left, a decode under
    /// way ends soon and the data are forgotten.
    virtual void cancel() = 0;
};

/// Opens the file of a load; called on the loader's threads.
using DecoderOpener = std::function<Result<std::unique_ptr<Decoder>>(const QString& path)>;

class ImageLoader
{
  public:
    ImageLoader();
    /// A loader that opens files by `opener` instead of by the table of codecs, on a machine of so many
    /// `processors`; 0: as many as this one has.
    explicit ImageLoader(DecoderOpener opener, unsigned processors = 0);
    /// Drops every load, waits for its threads (a decode under way ends at its next look at its flag). Holds
    /// that outlive it keep what stood and give Cancelled for the rest.
    ~ImageLoader();
    ImageLoader(const ImageLoader&) = delete;
    ImageLoader& operator=(const ImageLoader&) = delete;

    /// Begins to load page `page` (from 1) of `path`; `box` in device pixels is the size that the first
    /// picture must cover, empty for the full one at once. A load of the same unchanged page that is under
    /// way or held is shared instead of repeated, when its first picture covers `box` and it has not failed.
    /// The newest load is kept even when nobody holds it, until the next one or cancel(). First pictures are
    /// decoded newest first and always go ahead of full decodes that nobody waits for: such a one under way
    /// is broken off and begun again later. A page that was read ahead, and has not changed since, stands at
    /// once. Never waits for the disk longer than a stat.
    std::shared_ptr<ImageLoad> load(const QString& path, int page, QSize box);

    /// Names the page that is all but sure to be asked for next, as while a key is held: page 1 of `path`,
    /// for `box` (device pixels). Its first picture is decoded at once, beside that of the newest load and
    /// ahead of every full decode that nobody waits for, and is shared by the load that asks for it. Another
    /// page, an empty path, or a load of another page let it go. Nothing happens on a machine with one
    /// processor, which it would take from the newest load. Never waits for the disk longer than a stat.
    void expect(const QString& path, QSize box);

    /// Names the pages that are likely to be asked for next, nearest first, and the `box` (device pixels)
    /// that the loads will bring. While the loader is idle (nothing to decode for anybody, and the newest
    /// load that is held has its full picture), page 1 of each is decoded and kept at the size that fits the
    /// box, so that load() answers at once. What has been kept before stays until the cap needs its room. A
    /// read-ahead that is under way becomes the load when load() asks for it, and is broken off when another
    /// one has to be decoded, when somebody waits for a full picture, or when it is no longer named. One that
    /// fails is not tried again while the same paths are named. Never waits for the disk.
    void setNeighbours(const QStringList& paths, QSize box);
    /// `path` has just been written: what stands of it, or is under way, is of the former content and answers
    /// no further load, though size and time of the file may be the same. Holds keep what they have.
    void forget(const QString& path);
    /// The most bytes that read-ahead keeps, 512 MiB unless set; without any, nothing is read ahead.
    void setReadAheadCap(qint64 bytes);
    /// The bytes that read-ahead keeps now.
    qint64 readAheadBytes() const;

    /// Pages of a file without decoding it: 0 when it cannot be opened. Reads on the calling thread.
    static int pageCount(const QString& path);

  private:
    class Private;
    std::unique_ptr<Private> d;
};

} // namespace quorvia::engine

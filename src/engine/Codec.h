// What a codec is. One codec a format family; one table of codecs (codecTable), from which sniffing, the save
// filter, the tests and the fuzz targets are derived. Codecs hold no state and may be used from any thread.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>
#include <span>

namespace quorvia::engine {

enum class ColorModel; // ColorConversion.h

/// Facts of one page that stand in the header; no pixel is decoded for them.
struct PageHeader
{
    QSize size;           ///< pixels
    int bitsPerPixel = 0; ///< as stored in the file: 1, 4, 8, 16, 24, 32, 48, 64
};

/// One decoded page. `image` is QImage::Format_Mono, Indexed8, Grayscale8, RGB32 or ARGB32 (not
/// premultiplied).
struct Picture
{
    QImage image;
    QSize fullSize;          ///< size of the page in pixels; `image` is smaller when a box allowed it
    int bitsPerPixel = 0;    ///< of the file, not of `image`
    bool complete = true;    ///< false when the file ended early or broke: the rest is blank
    QByteArray profile = {}; ///< ICC profile of the colours in `image` (RGB or grey); empty for sRGB
    bool readError = false;  ///< the rest is blank since reading failed: another try may give more

    /// True when `image` holds every pixel of the page.
    bool isFull() const { return image.size() == fullSize; }
};

/// Set by the asker to drop a decode under way; looked at every few rows.
using CancelFlag = std::atomic<bool>;

/// One open file. Used by one thread at a time.
class Decoder
{
  public:
    virtual ~Decoder();

    /// Pages in the file, at least 1. May read on in the file, never decodes pixels.
    virtual int pageCount() = 0;
    /// Facts of page `page` (from 1). Unsupported, Damaged or TooLarge when the page cannot be decoded at
    /// all.
    virtual Result<PageHeader> header(int page) = 0;
    /// Decodes page `page` (from 1). With a non-empty `box` (pixels) the picture may come smaller than the
    /// page, at the cheapest size that still covers the size at which the page fits into the box; an empty
    /// box asks for every pixel. A file cut short gives what could be read with `complete` false; Damaged
    /// only when there is nothing to show. Cancelled when `cancel` was set.
    virtual Result<Picture> decode(int page, QSize box, const CancelFlag& cancel) = 0;
    /// True when decode() with a box makes use of it; false, as here, when it gives every pixel all the same.
    virtual bool scales() const;
    /// True, as here, when decode() of page `page` (from 1), whose header was read, ends soon after `cancel`
    /// was set; false when it may go on to its end. Such a page is not read ahead when it is large: who ends
    /// the program would wait for it.
    virtual bool canBreakOff(int page) const;
};

/// How a JPEG is written, in the terms of the image engine's four properties.
struct JpegOptions
{
    int luminance = 24;   ///< quantisation strength 0 (best) to 255
    int chrominance = 20; ///< the same for the colour planes
    int subSampling = 1;  ///< chroma: 0 none (1x1), 1 halved across (2x1), 2 both ways (2x2), 3 down (1x2)
    bool gray = false;
};

struct EncodeOptions
{
    JpegOptions jpeg;
    QByteArray profile =
        {}; ///< ICC profile to embed, for codecs whose keepsProfile() is true; empty for none
};

class Codec
{
  public:
    virtual ~Codec();
    Codec(const Codec&) = delete;
    Codec& operator=(const Codec&) = delete;

    /// Short name for logs and tables, as "JPEG".
    const QString& name() const { return m_name; }
    /// Extensions without the point, lower case, the usual one first.
    const QStringList& extensions() const { return m_extensions; }
    /// True when encode() can write this extension.
    bool canEncode(const QString& extension) const { return m_written.contains(extension); }

    /// True when a file that begins with `head` (up to 1024 bytes) is of this format. Content decides before
    /// the extension; `extension` (lower case, no point) matters only to formats without a mark of their own.
    virtual bool sniff(const QByteArray& head, const QString& extension) const = 0;
    /// Opens a file that sniff() accepted; reads the header only.
    virtual Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const = 0;
    /// True when encode() embeds an EncodeOptions::profile of `model` in files of this extension; false, as
    /// here, for formats that hold none.
    virtual bool keepsProfile(const QString& extension, ColorModel model) const;
    /// The whole file's bytes for `image` (any QImage format). Unsupported when the image cannot be held and,
    /// as here, when the format is only read.
    virtual Result<QByteArray> encode(const QImage& image, const QString& extension,
                                      const EncodeOptions& options) const;

  protected:
    /// A codec that reads `extensions` and writes those of them that are in `written`.
    Codec(QString name, QStringList extensions, QStringList written = {});

  private:
    const QString m_name;
    const QStringList m_extensions;
    const QStringList m_written;
};

/// All codecs, in the order in which they are asked.
std::span<const Codec* const> codecTable();

/// Opens `source` with the first codec whose sniff() accepts it; NotAnImage when none does. Whatever fails
/// here or in the decoder is Unreadable when a read met an error.
Result<std::unique_ptr<Decoder>> openDecoder(const std::shared_ptr<ByteSource>& source,
                                             const QString& extension);

/// The codec that writes `extension` (no point, any case), or null.
const Codec* encoderFor(const QString& extension);

/// A zeroed picture of `size`: pages that no pixel touches cost no memory. A null image when there is none
/// left.
QImage allocateImage(QSize size, QImage::Format format);

/// The smallest size with the proportions of `page` that covers `box` when the page is fitted into it, never
/// larger than the page. `page` itself for an empty box.
QSize fittedSize(QSize page, QSize box);

} // namespace quorvia::engine

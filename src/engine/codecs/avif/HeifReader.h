// One AVIF or HEIF file under libheif. Opening reads the boxes; decode() is dear and cannot be broken off,
// since the library has no way to.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/avif/HeifLibrary.h"

#include <QByteArray>
#include <QImage>
#include <QSize>

#include <memory>

namespace quorvia::engine {

class HeifReader
{
  public:
    /// Reads the boxes of `file` up to the primary picture. Damaged, Unsupported or TooLarge as the library
    /// says; Unsupported too when it is not installed.
    static Result<std::unique_ptr<HeifReader>> open(QByteArray file);

    HeifReader(const HeifReader&) = delete;
    HeifReader& operator=(const HeifReader&) = delete;

    const QByteArray& file() const { return m_file; }
    QSize size() const; ///< upright and cropped, as the boxes tell
    bool hasAlpha() const;
    int bits() const; ///< of a sample, as the decoder's configuration tells; 8 when nothing does
    /// The ICC profile; empty when there is none, or one beyond maxProfileBytes.
    QByteArray profile() const;

    /// Decodes the picture as RGB32, or ARGB32 when it has alpha. Samples of more than 8 bits come to 8 by
    /// rounding. Damaged when the coded picture has not the size that the boxes tell. `cancel` is looked at
    /// before and behind the library's work.
    Result<QImage> decode(const CancelFlag& cancel) const;

  private:
    HeifReader(const HeifLibrary& library, QByteArray file);
    Status readBoxes();
    Result<QImage> copied(const heif_image& image, const CancelFlag& cancel) const;

    const HeifLibrary& m_library;
    const QByteArray m_file; ///< the library looks into it for as long as it has the context
    std::unique_ptr<heif_context, decltype(&::heif_context_free)> m_context;
    std::unique_ptr<heif_image_handle, decltype(&::heif_image_handle_release)> m_picture;
};

} // namespace quorvia::engine

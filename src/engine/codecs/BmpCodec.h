// Windows and OS/2 bitmaps: BMP, DIB with and without file header, run-length variants.
#pragma once

#include "engine/Codec.h"

namespace quorvia::engine {

class BmpCodec final : public Codec
{
  public:
    QString name() const override;
    QStringList extensions() const override;
    bool sniff(const QByteArray& head, const QString& extension) const override;
    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override;
    bool canEncode(const QString& extension) const override;
    Result<QByteArray> encode(const QImage& image, const QString& extension,
                              const EncodeOptions& options) const override;
};

} // namespace quorvia::engine

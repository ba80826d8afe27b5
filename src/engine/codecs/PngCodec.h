// PNG through libpng: all depths and colour types, interlaced too.
#pragma once

#include "engine/Codec.h"

namespace quorvia::engine {

class PngCodec final : public Codec
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

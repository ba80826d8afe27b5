// Codecs that are still being built: they know no file.
#include "engine/codecs/Codecs.h"

namespace quorvia::engine {

namespace {

class NoCodec final : public Codec
{
  public:
    QString name() const override { return QStringLiteral("none"); }
    QStringList extensions() const override { return {}; }
    bool sniff(const QByteArray&, const QString&) const override { return false; }
    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource>) const override
    {
        return Error{ErrorKind::Unsupported, QStringLiteral("not built")};
    }
    bool canEncode(const QString&) const override { return false; }
    Result<QByteArray> encode(const QImage&, const QString&, const EncodeOptions&) const override
    {
        return Error{ErrorKind::Unsupported, QStringLiteral("not built")};
    }
};

const NoCodec none;

} // namespace

const Codec& icoCodec()
{
    return none;
}

const Codec& tgaCodec()
{
    return none;
}

const Codec& softimageCodec()
{
    return none;
}

const Codec& wpgCodec()
{
    return none;
}

} // namespace quorvia::engine

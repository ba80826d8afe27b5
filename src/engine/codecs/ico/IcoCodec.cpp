#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/DecoderOf.h"
#include "engine/codecs/ico/IcoDirectory.h"
#include "engine/codecs/ico/IcoEntry.h"
#include "engine/codecs/ico/IcoWriter.h"
#include "engine/codecs/PageNumber.h"

#include <algorithm>
#include <optional>

namespace quorvia::engine {

namespace {

/// Shows the best entry that can be decoded. Icons are small: which one that is gets known by decoding.
class IcoDecoder final : public Decoder
{
  public:
    IcoDecoder(std::shared_ptr<ByteSource> source, std::vector<IcoEntry> entries)
        : m_source(std::move(source)), m_entries(std::move(entries))
    {
    }

    int pageCount() override { return 1; }

    Result<PageHeader> header(int page) override
    {
        if (const Status there = onlyPage(page); !there)
            return there.error();
        const IcoEntry& entry = chosen();
        return PageHeader{entry.size, entry.bitsPerPixel};
    }

    Result<Picture> decode(int page, QSize, const CancelFlag& cancel) override
    {
        if (const Status there = onlyPage(page); !there)
            return there.error();
        if (cancel)
            return cancelledError();
        const IcoEntry& entry = chosen();
        if (m_picture)
            return *m_picture;
        return decodeIcoEntry(m_source, entry, cancel);
    }

  private:
    const IcoEntry& chosen();

    std::shared_ptr<ByteSource> m_source;
    std::vector<IcoEntry> m_entries; ///< the best first; never empty
    const IcoEntry* m_chosen = nullptr;
    std::optional<Picture> m_picture; ///< of the chosen entry, when it was decoded already
};

/// The first entry that is whole, else the first that shows anything, else the first. When the best one is
/// large, its header's word is taken.
const IcoEntry& IcoDecoder::chosen()
{
    if (m_chosen)
        return *m_chosen;
    constexpr qint64 smallPixels = 1024 * 1024;
    constexpr size_t mostTries = 32;
    m_chosen = &m_entries.front();
    if (qint64(m_chosen->size.width()) * m_chosen->size.height() > smallPixels)
        return *m_chosen;
    const CancelFlag goOn{false};
    for (size_t i = 0; i < std::min(m_entries.size(), mostTries); ++i) {
        const auto picture = decodeIcoEntry(m_source, m_entries[i], goOn);
        if (!picture || (m_picture && !picture->complete))
            continue;
        m_chosen = &m_entries[i];
        m_picture = *picture;
        if (picture->complete)
            break;
    }
    return *m_chosen;
}

class IcoCodec final : public Codec
{
  public:
    IcoCodec()
        : Codec(QStringLiteral("ICO"), {QStringLiteral("ico"), QStringLiteral("cur")},
                {QStringLiteral("ico")})
    {
    }

    bool sniff(const QByteArray& head, const QString& extension) const override
    {
        return isIco(head, extensions().contains(extension));
    }
    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        return decoderOf<IcoDecoder>(source, readIcoDirectory(*source));
    }
    Result<QByteArray> encode(const QImage& image, const QString&, const EncodeOptions&) const override
    {
        return writeIco(image);
    }
};

} // namespace

const Codec& icoCodec()
{
    static const IcoCodec codec;
    return codec;
}

} // namespace quorvia::engine

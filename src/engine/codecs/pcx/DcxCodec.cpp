#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/Codecs.h"
#include "engine/codecs/PageNumber.h"

#include <QtEndian>

#include <algorithm>
#include <limits>
#include <vector>

namespace quorvia::engine {

namespace {

const QByteArray mark = QByteArrayLiteral("\xB1\x68\xDE\x3A");
constexpr int mostPages = 1023;
constexpr int tableEntries = mostPages + 1;
constexpr int entryBytes = 4;

struct Page
{
    qint64 offset;
    qint64 length;
};

/// The entries of the offset table up to its end mark. Where that is missing, the table ends where the first
/// picture begins. Entries that lie outside the file are no pages.
std::vector<qint64> readOffsets(const ByteSource& source)
{
    const QByteArray table = source.bytes(mark.size(), mostPages * entryBytes);
    std::vector<qint64> offsets;
    qint64 tableEnd = std::numeric_limits<qint64>::max();
    for (qsizetype at = 0; at + entryBytes <= table.size() && mark.size() + at < tableEnd; at += entryBytes) {
        const qint64 offset = qFromLittleEndian<quint32>(table.constData() + at);
        if (offset == 0)
            break;
        if (offset < mark.size() + entryBytes || offset >= source.size())
            continue;
        offsets.push_back(offset);
        tableEnd = std::min(tableEnd, offset);
    }
    return offsets;
}

/// Each page reaches to the next one in the file, in whatever order the table names them.
std::vector<Page> readPages(const ByteSource& source)
{
    const std::vector<qint64> offsets = readOffsets(source);
    std::vector<qint64> sorted = offsets;
    std::sort(sorted.begin(), sorted.end());
    std::vector<Page> pages;
    for (const qint64 offset : offsets) {
        const auto next = std::upper_bound(sorted.begin(), sorted.end(), offset);
        pages.push_back({offset, (next == sorted.end() ? source.size() : *next) - offset});
    }
    return pages;
}

class DcxDecoder final : public Decoder
{
  public:
    DcxDecoder(std::shared_ptr<ByteSource> source, std::vector<Page> pages)
        : m_source(std::move(source)), m_pages(std::move(pages))
    {
    }

    int pageCount() override { return int(m_pages.size()); }

    Result<PageHeader> header(int page) override
    {
        const auto decoder = openPage(page);
        if (!decoder)
            return decoder.error();
        return (*decoder)->header(1);
    }

    Result<Picture> decode(int page, QSize box, const CancelFlag& cancel) override
    {
        const auto decoder = openPage(page);
        if (!decoder)
            return decoder.error();
        return (*decoder)->decode(1, box, cancel);
    }

  private:
    Result<std::unique_ptr<Decoder>> openPage(int page) const
    {
        if (const Status there = pageAmong(page, int(m_pages.size())); !there)
            return there.error();
        const Page& place = m_pages[size_t(page) - 1];
        return pcxCodec().open(ByteSource::window(m_source, place.offset, place.length));
    }

    std::shared_ptr<ByteSource> m_source;
    std::vector<Page> m_pages;
};

class DcxCodec final : public Codec
{
  public:
    DcxCodec() : Codec(QStringLiteral("DCX"), {QStringLiteral("dcx")}, {QStringLiteral("dcx")}) {}

    bool sniff(const QByteArray& head, const QString&) const override { return head.startsWith(mark); }

    Result<std::unique_ptr<Decoder>> open(std::shared_ptr<ByteSource> source) const override
    {
        if (source->bytes(0, mark.size()) != mark)
            return Error{ErrorKind::Damaged, QStringLiteral("no mark of a DCX")};
        std::vector<Page> pages = readPages(*source);
        if (pages.empty())
            return Error{ErrorKind::Damaged, QStringLiteral("the DCX names no page that lies in the file")};
        return std::unique_ptr<Decoder>(std::make_unique<DcxDecoder>(std::move(source), std::move(pages)));
    }

    Result<QByteArray> encode(const QImage& image, const QString&,
                              const EncodeOptions& options) const override
    {
        const Result<QByteArray> page = pcxCodec().encode(image, QStringLiteral("pcx"), options);
        if (!page)
            return page.error();
        try {
            QByteArray out = mark;
            out.resize(mark.size() + tableEntries * entryBytes, '\0');
            qToLittleEndian<quint32>(quint32(out.size()), out.data() + mark.size());
            return out + *page;
        } catch (const std::bad_alloc&) {
            return noMemoryError();
        }
    }
};

} // namespace

const Codec& dcxCodec()
{
    static const DcxCodec codec;
    return codec;
}

} // namespace quorvia::engine

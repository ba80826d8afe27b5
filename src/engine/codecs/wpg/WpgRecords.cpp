#include "engine/codecs/wpg/WpgRecords.h"

#include <QtEndian>

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr qint64 headerLength = 16;
constexpr size_t mostRecords = 1'000'000;

/// A number of one, three or five bytes: FF announces 16 bits, whose highest bit announces 16 more.
quint32 variableNumber(WpgNumbers& in)
{
    const int first = in.u8();
    if (first != 0xFF)
        return quint32(first);
    const auto high = quint32(in.u16());
    if ((high & 0x8000) == 0)
        return high;
    return (high & 0x7FFF) << 16 | quint32(in.u16());
}

/// Reads the head of the record at `at`; `told` becomes the length that it names. False past the end.
bool readRecordHead(const ByteSource& source, int version, qint64 at, WpgRecord& record, qint64& told)
{
    constexpr qint64 longestHead = 12;
    WpgNumbers in(source.bytes(at, longestHead));
    if (in.left() < 2)
        return false;
    if (version == 2)
        in.skip(1); // the record's class
    record.type = in.u8();
    record.subRecords = version == 2 ? int(std::min<quint32>(variableNumber(in), mostRecords)) : 0;
    const bool there = in.left() > 0;
    told = variableNumber(in);
    record.offset = at + in.at();
    return there && record.offset <= source.size();
}

} // namespace

template <class T>
T WpgNumbers::take()
{
    const bool there = m_at + qsizetype(sizeof(T)) <= m_bytes.size();
    const T value = there ? qFromLittleEndian<T>(m_bytes.constData() + m_at) : T(0);
    m_at += qsizetype(sizeof(T));
    return value;
}

template quint8 WpgNumbers::take();
template quint16 WpgNumbers::take();
template qint16 WpgNumbers::take();
template quint32 WpgNumbers::take();
template qint32 WpgNumbers::take();

bool WpgFile::isDrawing(const WpgRecord& record) const
{
    if (version == 1) {
        return (record.type >= wpg1::line && record.type <= wpg1::ellipse) || record.type == wpg1::text ||
               record.type == wpg1::curve;
    }
    return (record.type >= wpg2::polyline && record.type < wpg2::bitmap && record.type != 0x1A) ||
           (record.type >= wpg2::textLine && record.type <= wpg2::textPath) ||
           record.type == wpg2::objectImage;
}

bool WpgFile::isBitmap(const WpgRecord& record) const
{
    if (version == 1)
        return record.type == wpg1::bitmap || record.type == wpg1::placedBitmap;
    return record.type == wpg2::bitmapData;
}

bool WpgFile::isColorMap(const WpgRecord& record) const
{
    if (version == 1)
        return record.type == wpg1::colorMap;
    return record.type == wpg2::colorMap || record.type == wpg2::deepColorMap;
}

bool WpgFile::isPostScript(const WpgRecord& record) const
{
    return version == 1 && (record.type == wpg1::postScript || record.type == wpg1::placedPostScript);
}

bool isWpg(const QByteArray& head)
{
    constexpr char graphic = 0x16;
    return head.size() >= headerLength && head.startsWith("\xFFWPC") && head[9] == graphic;
}

Result<WpgFile> readWpgRecords(const ByteSource& source)
{
    const QByteArray head = source.bytes(0, headerLength);
    if (!isWpg(head))
        return Error{ErrorKind::Damaged, QStringLiteral("the header is cut short")};
    WpgNumbers in(head);
    in.skip(4);
    const qint64 start = in.u32();
    in.skip(2);
    WpgFile file;
    file.version = in.u8();
    in.skip(1);
    if (file.version != 1 && file.version != 2)
        return Error{ErrorKind::Unsupported, QStringLiteral("WPG version %1").arg(file.version)};
    if (in.u16() != 0)
        return Error{ErrorKind::Unsupported, QStringLiteral("an encrypted file")};

    const int end = file.version == 1 ? wpg1::end : wpg2::end;
    qint64 at = start < headerLength ? headerLength : start;
    bool cut = false;
    int frame = -1;
    while (file.records.size() < mostRecords) {
        WpgRecord record;
        qint64 told = 0;
        if (!readRecordHead(source, file.version, at, record, told) || record.type == 0)
            break;
        record.length = std::min(told, source.size() - record.offset);
        cut = record.length < told;
        file.whole = record.type == end && !cut;
        if (record.type == end)
            break;
        if (file.version == 2 && record.type == wpg2::bitmap)
            frame = int(file.records.size());
        record.frame = frame;
        file.records.push_back(record);
        if (cut)
            break;
        at = record.offset + record.length;
    }
    if (file.records.empty())
        return Error{ErrorKind::Damaged, QStringLiteral("the file holds no record")};
    return file;
}

} // namespace quorvia::engine

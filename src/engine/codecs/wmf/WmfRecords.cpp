#include "engine/codecs/wmf/WmfRecords.h"

#include <QtEndian>

#include <algorithm>
#include <array>

namespace quorvia::engine {

namespace {

constexpr qint64 headBytes = 6; // size in words as 32 bits, function as 16
constexpr qint64 headWords = headBytes / 2;

} // namespace

int WmfParams::word(qsizetype index) const
{
    if (index < 0 || index >= words())
        return 0;
    return qFromLittleEndian<qint16>(m_bytes.constData() + 2 * index);
}

quint32 WmfParams::doubleWord(qsizetype index) const
{
    return quint32(unsignedWord(index)) | quint32(unsignedWord(index + 1)) << 16;
}

std::optional<WmfRecord> WmfRecordReader::next()
{
    std::array<uchar, headBytes> head;
    if (m_reachedEnd || m_source->read(m_offset, head.data(), headBytes) < headBytes)
        return std::nullopt;
    const qint64 words = qFromLittleEndian<quint32>(head.data());
    const int code = qFromLittleEndian<quint16>(head.data() + 4);
    if (words < headWords)
        return std::nullopt;
    if (code == int(WmfFunction::EndOfFile)) {
        m_reachedEnd = true;
        return std::nullopt;
    }
    WmfRecord record;
    record.functionCode = code;
    record.function = WmfFunction(code);
    record.words = words;
    record.offset = m_offset + headBytes;
    const qint64 told = 2 * words - headBytes;
    record.length = std::clamp<qint64>(m_source->size() - record.offset, 0, told);
    record.whole = record.length == told;
    m_offset += 2 * words;
    return record;
}

WmfParams WmfRecordReader::params(const WmfRecord& record) const
{
    constexpr qint64 most = 1 << 20; // the longest list of points takes half of it
    return WmfParams(m_source->bytes(record.offset, std::min(record.length, most)));
}

std::shared_ptr<ByteSource> WmfRecordReader::tail(const WmfRecord& record, qint64 skipped) const
{
    return ByteSource::window(m_source, record.offset + skipped,
                              std::max<qint64>(record.length - skipped, 0));
}

} // namespace quorvia::engine

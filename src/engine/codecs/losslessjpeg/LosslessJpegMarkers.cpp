#include "engine/codecs/losslessjpeg/LosslessJpegMarkers.h"

#include "engine/codecs/CodecErrors.h"
#include "engine/codecs/jpeg/JpegHeader.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr int lossless = 3;

bool hasBody(int code)
{
    return code != 0x01 && (code < 0xd0 || code > 0xd9);
}

} // namespace

Result<LosslessFrame> readLosslessFrame(const ByteSource& source)
{
    const Result<JpegFrame> facts = readJpegFrame(source);
    if (!facts)
        return facts.error();
    if (facts->process != lossless)
        return unsupported(QStringLiteral("JPEG of process %1, not lossless").arg(facts->process));
    if (facts->precision < 2 || facts->precision > 16)
        return damaged(QStringLiteral("%1 bits a sample").arg(facts->precision));
    if (facts->components < 1 || facts->components > 4)
        return unsupported(QStringLiteral("%1 colour components").arg(facts->components));
    if (facts->size.height() == 0)
        return unsupported(QStringLiteral("lossless JPEG that tells its height behind the pixels"));

    LosslessFrame frame;
    frame.precision = facts->precision;
    frame.size = facts->size;
    constexpr int fixedLength = 8;
    constexpr int partLength = 3;
    const QByteArray parts =
        source.bytes(facts->offset + fixedLength, qint64(facts->components) * partLength);
    if (parts.size() < facts->components * partLength)
        return damaged(QStringLiteral("the frame header is cut short"));
    for (int i = 0; i < facts->components; ++i) {
        frame.components.push_back(uchar(parts[partLength * i]));
        constexpr int onceEachWay = 0x11;
        if (facts->components > 1 && uchar(parts[partLength * i + 1]) != onceEachWay)
            return unsupported(QStringLiteral("lossless JPEG with sub-sampling"));
    }
    return frame;
}

std::optional<JpegSegment> nextSegment(ByteSpan bytes, size_t offset)
{
    for (; offset + 1 < bytes.size(); ++offset) {
        const int code = bytes[offset + 1];
        if (bytes[offset] != 0xff || code == 0 || code == 0xff)
            continue;
        offset += 2;
        if (!hasBody(code))
            return JpegSegment{code, {}, offset};
        constexpr size_t lengthBytes = 2;
        if (offset + lengthBytes > bytes.size())
            return {};
        const size_t told = size_t(bytes[offset] << 8 | bytes[offset + 1]);
        const size_t end = std::min(offset + std::max(told, lengthBytes), bytes.size());
        return JpegSegment{code, bytes.subspan(offset + lengthBytes, end - offset - lengthBytes), end};
    }
    return {};
}

bool readHuffmanTables(ByteSpan body, std::array<std::optional<HuffmanSpec>, 4>& tables)
{
    constexpr size_t headLength = 17;
    while (!body.empty()) {
        if (body.size() < headLength)
            return false;
        const int tableClass = body[0] >> 4;
        const size_t index = body[0] & 15;
        HuffmanSpec spec;
        size_t values = 0;
        for (size_t i = 0; i < spec.counts.size(); ++i) {
            spec.counts[i] = body[1 + i];
            values += body[1 + i];
        }
        if (body.size() < headLength + values)
            return false;
        const ByteSpan stored = body.subspan(headLength, values);
        spec.values.assign(stored.begin(), stored.end());
        if (tableClass == 0) {
            if (index >= tables.size())
                return false;
            tables[index] = std::move(spec);
        }
        body = body.subspan(headLength + values);
    }
    return true;
}

Result<LosslessScan> readLosslessScan(ByteSpan body, const LosslessFrame& frame)
{
    const size_t count = body.empty() ? 0 : body[0];
    if (count < 1 || count > frame.components.size() || body.size() < 4 + 2 * count)
        return damaged(QStringLiteral("the scan header is cut short or wrong"));
    LosslessScan scan;
    for (size_t i = 0; i < count; ++i) {
        const auto found = std::find(frame.components.begin(), frame.components.end(), body[1 + 2 * i]);
        const int table = body[2 + 2 * i] >> 4;
        if (found == frame.components.end() || table > 3)
            return damaged(QStringLiteral("the scan names a component or a table that does not exist"));
        scan.parts.push_back({int(found - frame.components.begin()), table});
    }
    scan.predictor = body[1 + 2 * count];
    scan.pointTransform = body[3 + 2 * count] & 15;
    if (scan.predictor == 0)
        return unsupported(QStringLiteral("lossless JPEG of a hierarchy"));
    if (scan.predictor > 7 || scan.pointTransform >= frame.precision)
        return damaged(QStringLiteral("the scan has no such predictor or shift"));
    return scan;
}

} // namespace quorvia::engine

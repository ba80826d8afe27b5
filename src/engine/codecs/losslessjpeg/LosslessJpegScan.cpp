#include "engine/codecs/losslessjpeg/LosslessJpegScan.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

constexpr int firstRestart = 0xd0;
constexpr int restarts = 8; // markers before they begin anew

/// Turns the differences in `here` from pixel 1 on into samples; `predict(left, above, aboveLeft)` as T.81,
/// table H.1 numbers it.
template <class Predict>
void addPredictions(quint16* here, const quint16* above, int count, const Predict& predict)
{
    int left = here[0];
    for (int x = 1; x < count; ++x) {
        left = quint16(here[x] + predict(left, int(above[x]), int(above[x - 1])));
        here[x] = quint16(left);
    }
}

void addPredictions(int predictor, quint16* here, const quint16* above, int count)
{
    switch (predictor) {
    case 1:
        return addPredictions(here, above, count, [](int a, int, int) { return a; });
    case 2:
        return addPredictions(here, above, count, [](int, int b, int) { return b; });
    case 3:
        return addPredictions(here, above, count, [](int, int, int c) { return c; });
    case 4:
        return addPredictions(here, above, count, [](int a, int b, int c) { return a + b - c; });
    case 5:
        return addPredictions(here, above, count, [](int a, int b, int c) { return a + ((b - c) >> 1); });
    case 6:
        return addPredictions(here, above, count, [](int a, int b, int c) { return b + ((a - c) >> 1); });
    default:
        return addPredictions(here, above, count, [](int a, int b, int) { return (a + b) >> 1; });
    }
}

} // namespace

LosslessScanDecoder::LosslessScanDecoder(ByteSpan bytes, size_t offset, const LosslessFrame& frame,
                                         const LosslessScan& scan, std::vector<const DifferenceCodes*> codes,
                                         int restartRows)
    : m_bytes(bytes), m_offset(offset), m_width(frame.size.width()), m_height(frame.size.height()),
      m_scan(scan), m_codes(std::move(codes)), m_restartRows(restartRows > 0 ? restartRows : m_height),
      m_startValue(1 << (frame.precision - scan.pointTransform - 1)), m_rows(scan.parts.size())
{
    for (Rows& rows : m_rows) {
        rows.above.resize(size_t(m_width));
        rows.here.resize(size_t(m_width));
    }
}

LosslessScanDecoder::Outcome LosslessScanDecoder::decode(const LosslessRowSink& sink,
                                                         const CancelFlag& cancel)
{
    Outcome outcome{true, false, m_offset};
    const int segments = (m_height + m_restartRows - 1) / m_restartRows;
    for (int segment = 0; segment < segments && segment >= 0;) {
        JpegBits bits(m_bytes, outcome.end);
        const int first = segment * m_restartRows;
        const int end = std::min(m_height - first, m_restartRows) + first;
        outcome.complete = decodeSegment(bits, first, end, sink, cancel) && outcome.complete;
        outcome.cancelled = cancel;
        outcome.end = bits.offset();
        if (outcome.cancelled || segment + 1 == segments)
            break;
        const std::optional<JpegSegment> marker = nextSegment(m_bytes, outcome.end);
        const int number = marker ? marker->code - firstRestart : -1;
        if (number < 0 || number >= restarts) {
            outcome.complete = false;
            break;
        }
        const int skipped = (number - segment % restarts + restarts) % restarts;
        outcome.complete = outcome.complete && skipped == 0;
        outcome.end = marker->end;
        segment += 1 + skipped;
    }
    return outcome;
}

/// Decodes the rows of one restart interval; false when they are not all there.
bool LosslessScanDecoder::decodeSegment(JpegBits& bits, int firstRow, int endRow, const LosslessRowSink& sink,
                                        const CancelFlag& cancel)
{
    std::vector<const quint16*> samples(m_rows.size());
    for (int y = firstRow; y < endRow; ++y) {
        if (cancel)
            return false;
        const int count = readDifferences(bits);
        if (count == 0)
            return false;
        for (size_t i = 0; i < m_rows.size(); ++i) {
            predict(m_rows[i], count, y == firstRow);
            samples[i] = m_rows[i].here.data();
        }
        sink(y, count, samples);
        if (count < m_width)
            return false;
        for (Rows& rows : m_rows)
            std::swap(rows.above, rows.here);
    }
    return true;
}

/// Reads a row of differences into the rows; how many pixels are good.
int LosslessScanDecoder::readDifferences(JpegBits& bits)
{
    constexpr int step = 512; // pixels between two looks at the end of the bits
    for (int x = 0; x < m_width; x += step) {
        const JpegBits before = bits;
        const int end = x + std::min(step, m_width - x);
        if (readDifferencesOf(bits, x, end))
            continue;
        bits = before; // once more, looking closely
        while (readDifferencesOf(bits, x, x + 1))
            ++x;
        return x;
    }
    return m_width;
}

/// Reads the differences of the pixels `from` to `to` - 1; false when some of them are not there.
bool LosslessScanDecoder::readDifferencesOf(JpegBits& source, int from, int to)
{
    JpegBits bits = source; // in registers
    bool broken = false;
    if (m_rows.size() == 1) {
        quint16* out = m_rows[0].here.data();
        const DifferenceCodes& codes = *m_codes[0];
        for (int x = from; x < to; ++x)
            out[x] = quint16(codes.next(bits, broken));
    } else if (m_rows.size() == 3) {
        quint16* const outs[] = {m_rows[0].here.data(), m_rows[1].here.data(), m_rows[2].here.data()};
        const DifferenceCodes* const codes[] = {m_codes[0], m_codes[1], m_codes[2]};
        for (int x = from; x < to; ++x) {
            outs[0][x] = quint16(codes[0]->next(bits, broken));
            outs[1][x] = quint16(codes[1]->next(bits, broken));
            outs[2][x] = quint16(codes[2]->next(bits, broken));
        }
    } else {
        for (int x = from; x < to; ++x) {
            for (size_t i = 0; i < m_rows.size(); ++i)
                m_rows[i].here[size_t(x)] = quint16(m_codes[i]->next(bits, broken));
        }
    }
    source = bits;
    return !broken && !bits.overran();
}

void LosslessScanDecoder::predict(Rows& rows, int count, bool first) const
{
    quint16* here = rows.here.data();
    const quint16* above = rows.above.data();
    here[0] = quint16(here[0] + (first ? m_startValue : above[0]));
    addPredictions(first ? 1 : m_scan.predictor, here, above, count);
}

} // namespace quorvia::engine

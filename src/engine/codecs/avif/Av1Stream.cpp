// The units of AV1 streams: which of them tell a size, and which are pictures.
#include "engine/codecs/avif/Av1Headers.h"
#include "engine/codecs/avif/HeifCoded.h"

#include <algorithm>
#include <limits>

namespace quorvia::engine {

namespace {

/// The number at `at` of `bytes`, seven bits a byte, the lowest first; moves `at` behind it.
quint64 sevenBitNumber(const QByteArray& bytes, qsizetype& at)
{
    constexpr int mostBytes = 8;
    quint64 value = 0;
    for (int i = 0; i < mostBytes && at < bytes.size(); ++i) {
        const auto byte = uchar(bytes[at++]);
        value |= quint64(byte & 0x7F) << (7 * i);
        if (byte < 0x80)
            break;
    }
    return value;
}

/// The head of a unit (AV1 specification, 5.3).
struct UnitHead
{
    /// Of `bytes`, at least one.
    explicit UnitHead(const QByteArray& bytes)
    {
        const auto mark = uchar(bytes[0]);
        kind = mark >> 3 & 15;
        if ((mark & 4) != 0) {
            const auto extension = bytes.size() > 1 ? uchar(bytes[1]) : uchar(0);
            layer = {extension >> 5, extension >> 3 & 3};
            length = 2;
        }
        if ((mark & 2) != 0)
            content = sevenBitNumber(bytes, length);
    }

    /// True when the unit begins a frame; a header that repeats another one may stand where there is none to
    /// repeat.
    bool beginsFrame() const
    {
        constexpr int frameHeader = 3;
        constexpr int frame = 6;
        constexpr int repeatedHeader = 7;
        return kind == frameHeader || kind == frame || kind == repeatedHeader;
    }

    int kind = 0;
    Av1Layer layer;
    qsizetype length = 1;
    quint64 content = std::numeric_limits<quint64>::max(); ///< bytes behind the head
};

} // namespace

HeifStream av1Stream(const HeifPieces& stream, qint64& glances)
{
    constexpr int sequenceHeader = 1;
    constexpr int longestHead = 10; // with eight bytes of length
    HeifStream found;
    Av1Sequence sequence;
    sequence.isReduced = true; // until there is one, since no frame is decoded before
    qint64 at = 0;
    while (at < stream.size() && (glances -= glanceOfHeifUnit) >= 0) {
        const UnitHead head(stream.bytes(at, longestHead));
        at += head.length;
        if (at >= stream.size())
            break;
        const auto length = qint64(std::min(head.content, quint64(stream.size() - at)));
        const auto header = [&](qint64 longest) {
            QByteArray bytes = stream.bytes(at, std::min(length, longest));
            glances -= bytes.size();
            return bytes;
        };
        if (head.kind == sequenceHeader) {
            sequence = av1Sequence(header(longestHeifHeader));
            found.add({sequence.size, 0});
        } else if (head.beginsFrame()) {
            const QByteArray frame = sequence.isReduced ? QByteArray() : header(longestAv1FrameHead);
            found.add({av1FrameSize(sequence, frame, head.layer), 1});
        }
        at += length;
    }
    return found;
}

} // namespace quorvia::engine

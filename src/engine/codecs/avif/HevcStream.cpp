// The units of HEVC streams: which of them tell a size, and which are pictures.
#include "engine/codecs/avif/HeifBits.h"
#include "engine/codecs/avif/HeifCoded.h"
#include "engine/codecs/avif/HeifFields.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

/// The bits of a unit of H.265, from which the bytes that keep start codes out are taken.
QByteArray withoutGuards(const QByteArray& unit)
{
    QByteArray bytes;
    int zeros = 0;
    for (const char byte : unit) {
        if (zeros >= 2 && byte == 3) {
            zeros = 0;
            continue;
        }
        zeros = byte == 0 ? zeros + 1 : 0;
        bytes.append(byte);
    }
    return bytes;
}

/// Passes over profile, tier and level of a sequence with `layers` sub-layers beside the highest.
void skipProfile(HeifBits& bits, int layers)
{
    constexpr int profileBits = 88;
    constexpr int levelBits = 8;
    constexpr int mostLayers = 8;
    bits.skip(profileBits + levelBits);
    if (layers == 0)
        return;
    int length = 0;
    for (int layer = 0; layer < mostLayers; ++layer) {
        const bool profile = bits.flag();
        const bool level = bits.flag();
        if (layer < layers)
            length += (profile ? profileBits : 0) + (level ? levelBits : 0);
    }
    bits.skip(length);
}

/// The kind of an HEVC unit that begins with `head`; none of them when that is too short.
int hevcKind(const QByteArray& head)
{
    return head.size() >= 2 ? uchar(head[0]) >> 1 & 63 : -1;
}

constexpr int hevcParameterSet = 33;
constexpr int lastHevcSlice = 31; // the kinds up to here hold slices

/// The size in the HEVC sequence parameter set `unit`.
QSize hevcSequenceSize(const QByteArray& unit)
{
    HeifBits bits(withoutGuards(unit.mid(2, longestHeifHeader)));
    bits.skip(4);
    const int layers = int(bits.take(3));
    bits.skip(1);
    skipProfile(bits, layers);
    bits.golomb();          // the set's number
    if (bits.golomb() == 3) // chroma
        bits.skip(1);
    const quint64 width = bits.golomb();
    const quint64 height = bits.golomb();
    return heifSizeFrom(bits, width, height);
}

} // namespace

HeifStream hevcUnit(const QByteArray& unit)
{
    const int kind = hevcKind(unit);
    if (kind == hevcParameterSet)
        return {hevcSequenceSize(unit), 0};
    return {QSize(), kind >= 0 && kind <= lastHevcSlice ? 1U : 0U};
}

HeifStream hevcStream(const HeifPieces& stream, qint64& glances)
{
    constexpr int lengthBytes = 4;
    constexpr qint64 headBytes = 2;
    HeifStream found;
    qint64 at = 0;
    while (at < stream.size() && (glances -= glanceOfHeifUnit) >= 0) {
        const auto length = qint64(HeifFields(stream.bytes(at, lengthBytes)).take(lengthBytes));
        at += lengthBytes;
        QByteArray unit = stream.bytes(at, std::min(length, headBytes));
        if (hevcKind(unit) == hevcParameterSet) {
            unit = stream.bytes(at, std::min(length, longestHeifHeader));
            glances -= unit.size();
        }
        found.add(hevcUnit(unit));
        at += length;
    }
    return found;
}

} // namespace quorvia::engine

#include "engine/codecs/avif/Av1Headers.h"

#include "engine/codecs/avif/HeifBits.h"

#include <algorithm>

namespace quorvia::engine {

namespace {

using Use = Av1Sequence::Use;

constexpr int referencesOfFrame = 7;
constexpr int referencesKept = 8;
constexpr int referenceBits = 3;

/// Reads timing, decoder model and operating points.
void readOperation(HeifBits& bits, Av1Sequence& sequence)
{
    int delayBits = 0;
    if (bits.flag()) { // timing
        bits.skip(32 + 32);
        const bool isEven = bits.flag();
        if (isEven)
            bits.golomb();
        if (bits.flag()) { // decoder model
            delayBits = int(bits.take(5)) + 1;
            bits.skip(32);
            sequence.removalTimeBits = int(bits.take(5)) + 1;
            const int timeBits = int(bits.take(5)) + 1;
            sequence.shownTimeBits = isEven ? 0 : timeBits;
        }
    }
    const bool displayDelay = bits.flag();
    const int points = int(bits.take(5)) + 1;
    for (int i = 0; i < points; ++i) {
        constexpr quint32 highestWithoutTier = 7;
        Av1Sequence::OperatingPoint point;
        point.layers = bits.take(12);
        if (bits.take(5) > highestWithoutTier)
            bits.skip(1);
        point.hasModel = delayBits > 0 && bits.flag();
        if (point.hasModel)
            bits.skip(2 * delayBits + 1);
        if (displayDelay && bits.flag())
            bits.skip(4);
        sequence.points.append(point);
    }
}

Use readUse(HeifBits& bits)
{
    if (bits.flag())
        return Use::ByFrame;
    return bits.flag() ? Use::On : Use::Off;
}

/// Reads what a sequence that is not the reduced one tells behind its size.
void readTools(HeifBits& bits, Av1Sequence& sequence)
{
    if (bits.flag()) { // numbers of frames
        sequence.differenceBits = int(bits.take(4)) + 2;
        sequence.frameNumberBits = int(bits.take(3)) + 1 + sequence.differenceBits;
    }
    bits.skip(3); // large blocks, filters within the frame
    bits.skip(4); // compounds, warped motion, filters in two directions
    const bool hasOrder = bits.flag();
    if (hasOrder)
        bits.skip(2);
    sequence.screenTools = readUse(bits);
    if (sequence.screenTools != Use::Off)
        sequence.wholeMotion = readUse(bits);
    if (hasOrder)
        sequence.orderBits = int(bits.take(3)) + 1;
}

/// Passes over the times at which the frames of operating points that `layer` belongs to leave the buffer.
void skipRemovalTimes(HeifBits& bits, const Av1Sequence& sequence, Av1Layer layer)
{
    for (const Av1Sequence::OperatingPoint& point : sequence.points) {
        const quint32 both = 1U << layer.temporal | 1U << (layer.spatial + 8);
        if (point.hasModel && (point.layers == 0 || (point.layers & both) == both))
            bits.skip(sequence.removalTimeBits);
    }
}

void skipReferences(HeifBits& bits, const Av1Sequence& sequence)
{
    const bool isShort = sequence.orderBits > 0 && bits.flag();
    if (isShort)
        bits.skip(2 * referenceBits);
    bits.skip(referencesOfFrame * ((isShort ? 0 : referenceBits) + sequence.differenceBits));
}

bool takesSizeOfReference(HeifBits& bits)
{
    for (int i = 0; i < referencesOfFrame; ++i) {
        if (bits.flag())
            return true;
    }
    return false;
}

QSize readSize(HeifBits& bits, const Av1Sequence& sequence)
{
    const quint64 width = quint64(bits.take(sequence.widthBits)) + 1;
    const quint64 height = quint64(bits.take(sequence.heightBits)) + 1;
    return heifSizeFrom(bits, width, height);
}

} // namespace

Av1Sequence av1Sequence(const QByteArray& header)
{
    HeifBits bits(header);
    Av1Sequence sequence;
    bits.skip(3 + 1); // profile, still picture
    sequence.isReduced = bits.flag();
    if (sequence.isReduced)
        bits.skip(5); // level
    else
        readOperation(bits, sequence);
    sequence.widthBits = int(bits.take(4)) + 1;
    sequence.heightBits = int(bits.take(4)) + 1;
    sequence.size = readSize(bits, sequence);
    if (!sequence.isReduced)
        readTools(bits, sequence);
    return sequence;
}

QSize av1FrameSize(const Av1Sequence& sequence, const QByteArray& header, Av1Layer layer)
{
    enum Kind : quint32 { Key, Inter, IntraOnly, Switch };
    constexpr quint32 allKept = (1U << referencesKept) - 1;
    HeifBits bits(header);
    if (sequence.isReduced || bits.flag()) // shows a frame again
        return {};
    const auto kind = Kind(bits.take(2));
    const bool isIntra = kind == Key || kind == IntraOnly;
    const bool isShown = bits.flag();
    bits.skip(isShown ? sequence.shownTimeBits : 1);
    const bool startsAnew = kind == Switch || (kind == Key && isShown);
    const bool isResilient = startsAnew || bits.flag();
    bits.skip(1); // whether probabilities stay
    const bool screenTools =
        sequence.screenTools == Use::ByFrame ? bits.flag() : sequence.screenTools == Use::On;
    if (screenTools && sequence.wholeMotion == Use::ByFrame)
        bits.skip(1);
    bits.skip(sequence.frameNumberBits);
    if (kind != Switch && !bits.flag())
        return {};
    bits.skip(sequence.orderBits);
    if (!isIntra && !isResilient)
        bits.skip(referenceBits);
    if (sequence.removalTimeBits > 0 && bits.flag())
        skipRemovalTimes(bits, sequence, layer);
    const quint32 replaced = startsAnew ? allKept : bits.take(referencesKept);
    if ((!isIntra || replaced != allKept) && isResilient)
        bits.skip(referencesKept * sequence.orderBits);
    if (!isIntra) {
        skipReferences(bits, sequence);
        if (!isResilient && takesSizeOfReference(bits))
            return {};
    }
    return readSize(bits, sequence);
}

} // namespace quorvia::engine

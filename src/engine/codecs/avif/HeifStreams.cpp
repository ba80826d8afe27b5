// The bits of sequence headers, and the kinds of units.
#include "engine/codecs/avif/HeifCoded.h"
#include "engine/codecs/avif/HeifFields.h"

#include <algorithm>
#include <limits>

namespace quorvia::engine {

namespace {

constexpr qint64 longestSet = 1024; // bytes of a header before the size, many times over
constexpr qint64 glanceOfUnit = 8;  // what passing over a unit costs, in bytes looked at

/// Bits from the highest of each byte down; zeros behind the end.
class Bits
{
  public:
    explicit Bits(QByteArray bytes) : m_bytes(std::move(bytes)) {}

    quint32 take(int count)
    {
        quint32 value = 0;
        for (int i = 0; i < count; ++i)
            value = value << 1 | bit();
        return value;
    }
    bool flag() { return bit() != 0; }
    void skip(int count) { m_at += count; }

    /// A number of the Exponential-Golomb code of order 0, which both formats have.
    quint32 golomb()
    {
        int zeros = 0;
        while (!isAtEnd() && !flag())
            ++zeros;
        if (zeros >= 32)
            return std::numeric_limits<quint32>::max();
        return (1U << zeros) - 1 + take(zeros);
    }
    bool isAtEnd() const { return m_at >= qint64(m_bytes.size()) * 8; }

  private:
    quint32 bit()
    {
        const quint32 value =
            isAtEnd() ? 0U : quint32(uchar(m_bytes[qsizetype(m_at / 8)])) >> (7 - m_at % 8) & 1;
        ++m_at;
        return value;
    }

    const QByteArray m_bytes; ///< const, so that looking into shared bytes does not copy them
    qint64 m_at = 0;
};

/// A size from its sides as the file counts them; empty when the bits ended before.
QSize sizeFrom(const Bits& bits, quint64 width, quint64 height)
{
    constexpr quint64 most = std::numeric_limits<int>::max();
    return bits.isAtEnd() ? QSize() : QSize(int(std::min(width, most)), int(std::min(height, most)));
}

/// Passes over what stands before the sizes in a sequence header that is not the reduced one.
void skipOperation(Bits& bits)
{
    int delayBits = 0;
    if (bits.flag()) { // timing
        bits.skip(64);
        if (bits.flag())
            bits.golomb();
        if (bits.flag()) { // decoder model
            delayBits = int(bits.take(5)) + 1;
            bits.skip(32 + 5 + 5);
        }
    }
    const bool displayDelay = bits.flag();
    const int points = int(bits.take(5)) + 1;
    for (int point = 0; point < points; ++point) {
        constexpr quint32 highestWithoutTier = 7;
        bits.skip(12);
        if (bits.take(5) > highestWithoutTier)
            bits.skip(1);
        if (delayBits > 0 && bits.flag())
            bits.skip(2 * delayBits + 1);
        if (displayDelay && bits.flag())
            bits.skip(4);
    }
}

QSize av1SequenceSize(const QByteArray& header)
{
    Bits bits(header);
    bits.skip(3 + 1); // profile, still picture
    if (bits.flag())
        bits.skip(5); // level
    else
        skipOperation(bits);
    const int widthBits = int(bits.take(4)) + 1;
    const int heightBits = int(bits.take(4)) + 1;
    const quint64 width = quint64(bits.take(widthBits)) + 1;
    const quint64 height = quint64(bits.take(heightBits)) + 1;
    return sizeFrom(bits, width, height);
}

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
void skipProfile(Bits& bits, int layers)
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
    Bits bits(withoutGuards(unit.mid(2, longestSet)));
    bits.skip(4);
    const int layers = int(bits.take(3));
    bits.skip(1);
    skipProfile(bits, layers);
    bits.golomb();          // the set's number
    if (bits.golomb() == 3) // chroma
        bits.skip(1);
    const quint64 width = bits.golomb();
    const quint64 height = bits.golomb();
    return sizeFrom(bits, width, height);
}

/// True when a unit of AV1 of the kind `kind` begins a frame; a header that repeats another one may stand
/// where there is none to repeat.
bool beginsAv1Frame(int kind)
{
    constexpr int frameHeader = 3;
    constexpr int frame = 6;
    constexpr int repeatedHeader = 7;
    return kind == frameHeader || kind == frame || kind == repeatedHeader;
}

} // namespace

HeifStream av1Stream(const HeifPieces& stream, qint64& glances)
{
    constexpr int sequenceHeader = 1;
    constexpr int longestHead = 10; // with eight bytes of length
    HeifStream found;
    qint64 at = 0;
    while (at < stream.size() && (glances -= glanceOfUnit) >= 0) {
        const QByteArray head = stream.bytes(at, longestHead);
        const auto mark = uchar(head[0]);
        qsizetype headLength = (mark & 4) != 0 ? 2 : 1;
        quint64 length = std::numeric_limits<quint64>::max();
        if ((mark & 2) != 0)
            length = sevenBitNumber(head, headLength);
        at += headLength;
        if (at >= stream.size())
            break;
        length = std::min(length, quint64(stream.size() - at));
        const int kind = mark >> 3 & 15;
        if (kind == sequenceHeader) {
            const QByteArray header = stream.bytes(at, std::min(qint64(length), longestSet));
            glances -= header.size();
            found.add({av1SequenceSize(header), 0});
        } else if (beginsAv1Frame(kind)) {
            ++found.pictures;
        }
        at += qint64(length);
    }
    return found;
}

HeifStream av1Stream(const HeifPieces& stream)
{
    qint64 glances = heifGlances;
    return av1Stream(stream, glances);
}

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
    while (at < stream.size() && (glances -= glanceOfUnit) >= 0) {
        const auto length = qint64(HeifFields(stream.bytes(at, lengthBytes)).take(lengthBytes));
        at += lengthBytes;
        QByteArray unit = stream.bytes(at, std::min(length, headBytes));
        if (hevcKind(unit) == hevcParameterSet) {
            unit = stream.bytes(at, std::min(length, longestSet));
            glances -= unit.size();
        }
        found.add(hevcUnit(unit));
        at += length;
    }
    return found;
}

} // namespace quorvia::engine

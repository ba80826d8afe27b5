// What the marker segments of a lossless JPEG say, as plain functions over bytes. Cheap.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QSize>

#include <array>
#include <optional>
#include <span>
#include <vector>

namespace quorvia::engine {

using ByteSpan = std::span<const uchar>;

struct LosslessFrame
{
    int precision = 0;           ///< bits a sample, 2 to 16
    QSize size;                  ///< pixels
    std::vector<int> components; ///< their identifiers, 1 to 4
};

/// The frame header of the JPEG in `source`. Unsupported for what is not sequential lossless Huffman coding
/// without sub-sampling, Damaged when it breaks the rules. Format: ITU-T T.81, B.2.2.
Result<LosslessFrame> readLosslessFrame(const ByteSource& source);

/// One marker segment.
struct JpegSegment
{
    int code = 0;   ///< second byte of the marker
    ByteSpan body;  ///< behind the length; empty for markers without one
    size_t end = 0; ///< offset behind the segment
};

/// The first marker segment at or behind `offset`, whatever else stands before it; nothing when there is no
/// marker. A body that the end of the bytes cuts short is given as far as it goes.
std::optional<JpegSegment> nextSegment(ByteSpan bytes, size_t offset);

/// A Huffman table as a DHT segment tells it: how many codes there are of each length, and their values.
struct HuffmanSpec
{
    std::array<int, 16> counts = {};
    std::vector<uchar> values;
};

/// Reads the DC tables in the body of a DHT segment into `tables`; tables of class AC are skipped. False when
/// the segment breaks the rules. Format: ITU-T T.81, B.2.4.2.
bool readHuffmanTables(ByteSpan body, std::array<std::optional<HuffmanSpec>, 4>& tables);

struct LosslessScan
{
    struct Part
    {
        int component = 0; ///< index into the frame's components
        int table = 0;     ///< index of its Huffman table
    };
    std::vector<Part> parts;
    int predictor = 0;      ///< 1 to 7
    int pointTransform = 0; ///< bits by which the samples were shifted down
};

/// Reads the body of an SOS segment. Format: ITU-T T.81, B.2.3 and H.
Result<LosslessScan> readLosslessScan(ByteSpan body, const LosslessFrame& frame);

} // namespace quorvia::engine

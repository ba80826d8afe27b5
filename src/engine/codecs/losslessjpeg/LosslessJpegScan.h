// Decodes one scan of a lossless JPEG row by row: differences first, then the predictor over each row. Holds
// two rows a component.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/losslessjpeg/LosslessJpegHuffman.h"
#include "engine/codecs/losslessjpeg/LosslessJpegMarkers.h"

#include <functional>
#include <vector>

namespace quorvia::engine {

/// Takes decoded samples: the first `count` of row `y` (from 0), a row for each part of the scan.
using LosslessRowSink = std::function<void(int y, int count, const std::vector<const quint16*>& rows)>;

class LosslessScanDecoder
{
  public:
    /// Decodes `scan` from `bytes` at `offset`; `codes` holds the table of each part. A restart marker stands
    /// behind each `restartRows` rows, 0 for none.
    LosslessScanDecoder(ByteSpan bytes, size_t offset, const LosslessFrame& frame, const LosslessScan& scan,
                        std::vector<const DifferenceCodes*> codes, int restartRows);

    struct Outcome
    {
        bool complete = false; ///< every sample was there
        bool cancelled = false;
        size_t end = 0; ///< the next marker lies here or further on
    };
    /// Decodes the rows into `sink`. What lies behind damage is taken up again at the next restart marker.
    Outcome decode(const LosslessRowSink& sink, const CancelFlag& cancel);

  private:
    /// A row as it is decoded, one a part of the scan.
    struct Rows
    {
        std::vector<quint16> above;
        std::vector<quint16> here;
    };
    bool decodeSegment(JpegBits& bits, int firstRow, int endRow, const LosslessRowSink& sink,
                       const CancelFlag& cancel);
    int readDifferences(JpegBits& bits);
    bool readDifferencesOf(JpegBits& source, int from, int to);
    void predict(Rows& rows, int count, bool first) const;

    ByteSpan m_bytes;
    size_t m_offset;
    int m_width;
    int m_height;
    LosslessScan m_scan;
    std::vector<const DifferenceCodes*> m_codes;
    int m_restartRows;
    int m_startValue; ///< predicts the first sample
    std::vector<Rows> m_rows;
};

} // namespace quorvia::engine

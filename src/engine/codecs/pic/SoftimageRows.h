// Unpacks the rows of a Softimage picture.
#pragma once

#include "engine/codecs/pic/SoftimageLayout.h"
#include "engine/codecs/SourceReader.h"

#include <QColor>

#include <vector>

namespace quorvia::engine {

class SoftimageRows
{
  public:
    SoftimageRows(const ByteSource& source, const SoftimageLayout& layout);

    /// The next row into `row` (a row of the layout's width): channels that the file lacks are 0, alpha 255.
    /// Returns how many pixels all channels reached: below the width when the file has ended. The pixels that
    /// no channel reached are left alone; `anything` tells whether there are others.
    int read(QRgb* row, bool& anything);

  private:
    int readPacket(const SoftimagePacket& packet);
    int readRaw(int bytes);
    int readRuns(int bytes, bool mixed);
    int readRun(int length, int bytes, int at);

    SourceReader m_reader;
    const SoftimageLayout& m_layout;
    std::vector<uchar> m_stored; ///< a row of one packet, its channels side by side
};

} // namespace quorvia::engine

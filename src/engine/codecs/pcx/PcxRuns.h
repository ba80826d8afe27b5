// Unpacks the bytes of a PCX file, row after row. A run may go on into the next row.
#pragma once

#include "engine/codecs/pcx/PcxLayout.h"
#include "engine/codecs/SourceReader.h"

#include <limits>

namespace quorvia::engine {

class PcxRuns
{
  public:
    PcxRuns(const ByteSource& source, bool packed)
        : m_reader(source, pcxHeaderBytes, std::numeric_limits<qint64>::max()), m_packed(packed)
    {
    }

    /// Fills `out` with up to `count` bytes; fewer come only at the end of the file.
    int read(uchar* out, int count)
    {
        int done = 0;
        while (done < count && (m_run > 0 || nextRun())) {
            const int length = std::min(m_run, count - done);
            std::fill_n(out + done, length, m_value);
            done += length;
            m_run -= length;
        }
        return done;
    }

    /// Offset in the file behind the last code that was read.
    qint64 position() const { return m_position; }

  private:
    bool nextRun()
    {
        constexpr int runMark = 0xC0;
        for (;;) { // a run of length 0 is passed over
            int value = m_reader.next();
            m_run = 1;
            if (m_packed && value >= runMark) {
                m_run = value - runMark;
                value = m_reader.next();
                ++m_position;
            }
            if (value < 0) {
                m_run = 0;
                return false;
            }
            ++m_position;
            m_value = uchar(value);
            if (m_run > 0)
                return true;
        }
    }

    SourceReader m_reader;
    bool m_packed;
    int m_run = 0;
    uchar m_value = 0;
    qint64 m_position = pcxHeaderBytes;
};

} // namespace quorvia::engine

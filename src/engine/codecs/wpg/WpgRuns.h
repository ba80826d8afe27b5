// The run-length codes of WordPerfect graphics: bytes come out, gathered into rows.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/SourceReader.h"

#include <functional>
#include <vector>

namespace quorvia::engine {

enum class WpgPacking { Rows, Runs1, Runs2 }; ///< as they are, run length of version 1 or 2

/// Gathers bytes into rows of `rowBytes`, `height` of them; `onRow` is given each one when it is full.
class WpgRows
{
  public:
    using OnRow = std::function<void(int y, const uchar* row)>;
    WpgRows(qint64 rowBytes, int height, OnRow onRow);

    bool full() const { return m_y >= m_height; }
    /// Appends one byte; bytes behind the last row are dropped.
    void put(uchar byte);
    /// Shows the latest full row `count` times more; false in the middle of a row.
    bool repeat(int count);
    /// The row under way becomes the difference to the one above it.
    void differ() { m_differs = true; }
    /// Hands over a row that was only begun, the rest of it 0; false when there never was a byte.
    bool flush();

  private:
    void finish();

    std::vector<uchar> m_row;
    std::vector<uchar> m_above;
    OnRow m_onRow;
    size_t m_at = 0;
    int m_y = 0;
    int m_height;
    bool m_differs = false;
};

/// Unpacks `in` into `rows` until they are full, the codes end or break, or `cancel` is set.
void unpackWpg(SourceReader& in, WpgPacking packing, WpgRows& rows, const CancelFlag& cancel);

} // namespace quorvia::engine

#include "engine/codecs/tiff/TiffPieces.h"

#include <algorithm>

namespace quorvia::engine {

TiffPieces::TiffPieces(const TiffLayout& layout, qint64 rowBytes)
    : m_layout(layout), m_across((layout.stored.width() + layout.strile.width() - 1) / layout.strile.width()),
      m_down((layout.stored.height() + layout.strile.height() - 1) / layout.strile.height()),
      m_step(layout.strile.height())
{
    // Strips that are not compressed may be the whole page.
    constexpr qint64 pieceBytes = 256 * 1024;
    if (!layout.tiled && !layout.compressed)
        m_step =
            int(std::min<qint64>(std::max<qint64>(pieceBytes / rowBytes, 1) * layout.block.height(), m_step));
    m_perStrile = (layout.strile.height() + m_step - 1) / m_step;
}

TiffPiece TiffPieces::at(qint64 index) const
{
    const qint64 strile = index / m_perStrile;
    const auto first = int(index % m_perStrile) * m_step;
    const auto y = int(strile / m_across) * m_layout.strile.height() + first;
    const int left = std::min(m_layout.strile.height() - first, m_layout.stored.height() - y);
    return {quint32(strile), first, std::clamp(left, 0, m_step),
            int(strile % m_across) * m_layout.strile.width(), y};
}

} // namespace quorvia::engine

// Decodes single strips and tiles of a page out of their own bytes. A strile that is cut short or breaks
// gives the rows in front of the break.
#pragma once

#include "engine/Codec.h"
#include "engine/codecs/tiff/TiffHandle.h"
#include "engine/codecs/tiff/TiffLayout.h"

#include <cstdlib>
#include <memory>

namespace quorvia::engine {

struct FreeBytes
{
    void operator()(void* memory) const { std::free(memory); }
};
using TiffBuffer = std::unique_ptr<uchar, FreeBytes>;

/// What of a strile was decoded.
struct StrileOutcome
{
    int rows = 0; ///< at the top of the buffer; some decoders leave the last of them blank after a break
    bool whole = false; ///< nothing was missing or broken
};

class TiffStriles
{
  public:
    /// `layout` is the present directory of `handle`, whose bytes are `source`.
    TiffStriles(TiffHandle& handle, std::shared_ptr<ByteSource> source, const TiffLayout& layout);

    /// What follows speaks of rows of blocks (TiffLayout::block), which are rows of pixels in most files.

    /// Bytes from one decoded row to the next; 0 when the page's numbers contradict each other.
    qint64 rowBytes() const { return m_rowBytes; }
    /// Bytes that decoding `rows` rows of `planes` planes side by side takes besides the picture.
    qint64 memoryFor(int rows, int planes) const;
    /// Memory for `rows` rows; null when there is none.
    TiffBuffer allocate(int rows) const;
    /// Decodes `rows` rows of strile `index` from its row `first` on into `out`; `first` other than 0 only
    /// for strips that are not compressed. A strile that breaks is decoded a bounded number of times, in
    /// search of the break; the search ends, with no rows, when `cancel` is set.
    StrileOutcome decode(quint32 index, int first, int rows, uchar* out, const CancelFlag& cancel);

  private:
    qint64 mostStoredBytes(int rows) const;
    bool tryRows(quint32 index, QByteArray& stored, int rows, uchar* out);
    int rowsBeforeBreak(quint32 index, QByteArray& stored, int rows, uchar* out, const CancelFlag& cancel);

    TiffHandle& m_handle;
    std::shared_ptr<ByteSource> m_source;
    const TiffLayout& m_layout;
    qint64 m_rowBytes = 0;
    bool m_isJbig = false;
    bool m_isReversed = false; ///< the bits of JBIG data
};

} // namespace quorvia::engine

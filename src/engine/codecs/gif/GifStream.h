// One reading of a GIF file with giflib, up to the rows of its first frame. Cheap until rows are read.
#pragma once

#include "engine/ByteSource.h"
#include "engine/Result.h"

#include <QColor>
#include <QList>
#include <QRect>
#include <QSize>

#include <memory>
#include <optional>
#include <vector>

struct GifFileType;

namespace quorvia::engine {

struct GifFrame
{
    /// The logical screen, pixels; grown to reach a frame that is larger, the frame's size where it is empty.
    QSize canvas;
    QRect rectangle; ///< the frame on the canvas; may reach beyond it
    bool interlaced = false;
    QList<QRgb> palette; ///< opaque colours, 2 to 256
    std::optional<int> transparentIndex;
    int bitsPerPixel = 0; ///< of the frame's palette: 1, 4 or 8
};

class GifStream
{
  public:
    explicit GifStream(std::shared_ptr<ByteSource> source);
    ~GifStream();
    GifStream(const GifStream&) = delete;
    GifStream& operator=(const GifStream&) = delete;

    /// Reads on to the first frame; to be called once, first. Damaged when there is none.
    Result<GifFrame> firstFrame();
    /// The next row of the frame in the file's order; `row` has the frame's width. False when the file ended
    /// or broke; what came before stands in `row`.
    bool readRow(std::vector<unsigned char>& row);

  private:
    static int readBytes(GifFileType* gif, unsigned char* out, int length);
    /// Shortens the length of a data block to what the file still holds, so that the codes in front of a cut
    /// are unpacked and not dropped with their block.
    void boundBlock(unsigned char& length);
    /// Passes one extension block; takes the transparent entry from a graphics control block.
    bool passExtension();
    GifFrame describe() const;

    std::shared_ptr<ByteSource> m_source;
    qint64 m_offset = 0;
    bool m_inRows = false; ///< what is read now are the data blocks of the frame
    int m_blockLeft = 0;   ///< bytes that the present data block still holds
    int m_error = 0;
    GifFileType* m_gif = nullptr;
    std::optional<int> m_transparentIndex;
};

} // namespace quorvia::engine

#include "engine/codecs/gif/GifStream.h"

#include <gif_lib.h>

#include <algorithm>

namespace quorvia::engine {

namespace {

Error damaged(int code)
{
    const char* text = GifErrorString(code);
    return Error{ErrorKind::Damaged, QLatin1String(text ? text : "the GIF data is damaged")};
}

int depthOf(int colors)
{
    if (colors <= 2)
        return 1;
    return colors <= 16 ? 4 : 8;
}

QList<QRgb> colorsOf(const ColorMapObject* map)
{
    QList<QRgb> palette;
    constexpr int most = 256;
    if (!map) { // neither a palette of the frame's own nor one of the file: grey is as good as any
        for (int i = 0; i < most; ++i)
            palette.append(qRgb(i, i, i));
        return palette;
    }
    for (int i = 0; i < map->ColorCount && i < most; ++i)
        palette.append(qRgb(map->Colors[i].Red, map->Colors[i].Green, map->Colors[i].Blue));
    return palette;
}

} // namespace

GifStream::GifStream(std::shared_ptr<ByteSource> source) : m_source(std::move(source))
{
    m_gif = DGifOpen(this, readBytes, &m_error);
}

GifStream::~GifStream()
{
    if (m_gif)
        DGifCloseFile(m_gif, nullptr);
}

int GifStream::readBytes(GifFileType* gif, unsigned char* out, int length)
{
    auto* self = static_cast<GifStream*>(gif->UserData);
    const qint64 got = self->m_source->read(self->m_offset, out, length);
    self->m_offset += got;
    if (!self->m_inRows)
        return int(got);
    if (self->m_blockLeft > 0) {
        self->m_blockLeft -= int(got);
        return int(got);
    }
    if (got == 0)
        out[0] = 0; // the mark behind the last block
    self->boundBlock(out[0]);
    return 1;
}

void GifStream::boundBlock(unsigned char& length)
{
    length = uchar(std::clamp<qint64>(m_source->size() - m_offset, 0, length));
    m_blockLeft = length;
}

bool GifStream::passExtension()
{
    int function = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(m_gif, &function, &block) != GIF_OK)
        return false;
    while (block) {
        GraphicsControlBlock control;
        const bool isControl = function == GRAPHICS_EXT_FUNC_CODE;
        if (isControl && DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK &&
            control.TransparentColor != NO_TRANSPARENT_COLOR)
            m_transparentIndex = control.TransparentColor;
        if (DGifGetExtensionNext(m_gif, &block) != GIF_OK)
            return false;
    }
    return true;
}

Result<GifFrame> GifStream::firstFrame()
{
    if (!m_gif)
        return damaged(m_error);
    for (;;) {
        GifRecordType type = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(m_gif, &type) != GIF_OK)
            return damaged(m_gif->Error);
        if (type == TERMINATE_RECORD_TYPE)
            return Error{ErrorKind::Damaged, QStringLiteral("the file holds no frame")};
        if (type == EXTENSION_RECORD_TYPE) {
            if (!passExtension())
                return damaged(m_gif->Error);
            continue;
        }
        if (type != IMAGE_DESC_RECORD_TYPE || DGifGetImageDesc(m_gif) != GIF_OK)
            return damaged(m_gif->Error);
        return describe();
    }
}

GifFrame GifStream::describe() const
{
    const GifImageDesc& image = m_gif->Image;
    GifFrame frame;
    const QSize size(image.Width, image.Height);
    frame.canvas = QSize(m_gif->SWidth, m_gif->SHeight);
    frame.rectangle = QRect(QPoint(image.Left, image.Top), size);
    if (frame.canvas.isEmpty()) {
        frame.canvas = size;
        frame.rectangle.moveTo(0, 0);
    } else if (size.width() > frame.canvas.width() || size.height() > frame.canvas.height()) {
        frame.canvas = frame.canvas.expandedTo(QSize(image.Left + size.width(), image.Top + size.height()));
    }
    frame.interlaced = image.Interlace;
    frame.palette = colorsOf(image.ColorMap ? image.ColorMap : m_gif->SColorMap);
    frame.transparentIndex = m_transparentIndex;
    frame.bitsPerPixel = depthOf(int(frame.palette.size()));
    return frame;
}

bool GifStream::readRow(std::vector<unsigned char>& row)
{
    m_inRows = true;
    return DGifGetLine(m_gif, row.data(), int(row.size())) == GIF_OK;
}

} // namespace quorvia::engine

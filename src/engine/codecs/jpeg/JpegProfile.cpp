#include "engine/codecs/jpeg/JpegProfile.h"

#include <algorithm>
#include <cstring>

namespace quorvia::engine {

namespace {

constexpr JOCTET mark[] = "ICC_PROFILE"; // with its zero
constexpr size_t headLength = sizeof mark + 2;

/// The bytes that libjpeg has ready, at least one.
size_t ready(j_decompress_ptr info)
{
    if (info->src->bytes_in_buffer == 0)
        info->src->fill_input_buffer(info); // never runs dry: the source gives end marks, or jumps
    return info->src->bytes_in_buffer;
}

void moveOn(j_decompress_ptr info, size_t count)
{
    info->src->next_input_byte += count;
    info->src->bytes_in_buffer -= count;
}

JOCTET nextByte(j_decompress_ptr info)
{
    ready(info);
    const JOCTET byte = *info->src->next_input_byte;
    moveOn(info, 1);
    return byte;
}

} // namespace

void JpegProfile::attach(j_decompress_ptr info)
{
    info->client_data = this;
    jpeg_set_marker_processor(info, JPEG_APP0 + 2, takeSegment);
}

/// libjpeg's callback behind an APP2 marker: reads the segment. A jump may leave it, so nothing in it needs a
/// destructor.
boolean JpegProfile::takeSegment(j_decompress_ptr info)
{
    auto& profile = *static_cast<JpegProfile*>(info->client_data);
    const size_t high = nextByte(info);
    const size_t length = high << 8 | nextByte(info);
    size_t left = std::max<size_t>(length, 2) - 2;
    if (left >= headLength) {
        JOCTET head[headLength];
        for (JOCTET& byte : head)
            byte = nextByte(info);
        left -= headLength;
        if (std::memcmp(head, mark, sizeof mark) == 0) {
            profile.m_pieces.begin(head[sizeof mark], head[sizeof mark + 1]);
            while (left > 0) {
                const size_t now = std::min(left, ready(info));
                profile.m_pieces.add(info->src->next_input_byte, qsizetype(now));
                moveOn(info, now);
                left -= now;
            }
        }
    }
    if (left > 0)
        info->src->skip_input_data(info, static_cast<long>(left));
    return TRUE;
}

QByteArray JpegProfile::take(ColorModel model)
{
    QByteArray bytes = m_pieces.take();
    if (colorModelOf(bytes) != model)
        return {};
    return bytes;
}

} // namespace quorvia::engine

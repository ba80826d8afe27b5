#include "engine/codecs/jpeg/JpegSource.h"

#include "engine/codecs/jpeg/JpegErrors.h"

#include <jerror.h>

namespace quorvia::engine {

namespace {

JpegSource& sourceOf(j_decompress_ptr info)
{
    return *reinterpret_cast<JpegSource*>(info->src);
}

void begin(j_decompress_ptr) {}

boolean fill(j_decompress_ptr info)
{
    JpegSource& source = sourceOf(info);
    if (source.cancel->load(std::memory_order_relaxed))
        leaveCancelled(reinterpret_cast<j_common_ptr>(info));
    qint64 count = source.bytes->read(source.offset, source.buffer, sizeof source.buffer);
    if (count <= 0) {
        WARNMS(info, JWRN_JPEG_EOF);
        source.buffer[0] = 0xff;
        source.buffer[1] = JPEG_EOI;
        count = 2;
    } else {
        source.offset += count;
    }
    source.manager.next_input_byte = source.buffer;
    source.manager.bytes_in_buffer = static_cast<size_t>(count);
    return TRUE;
}

void skip(j_decompress_ptr info, long count)
{
    jpeg_source_mgr& manager = sourceOf(info).manager;
    if (count <= 0)
        return;
    const auto wanted = static_cast<size_t>(count);
    if (wanted <= manager.bytes_in_buffer) {
        manager.next_input_byte += wanted;
        manager.bytes_in_buffer -= wanted;
        return;
    }
    sourceOf(info).offset += static_cast<qint64>(wanted - manager.bytes_in_buffer);
    manager.bytes_in_buffer = 0;
}

void end(j_decompress_ptr) {}

} // namespace

jpeg_source_mgr* JpegSource::attach(const ByteSource& source, const CancelFlag& flag)
{
    bytes = &source;
    cancel = &flag;
    manager.init_source = begin;
    manager.fill_input_buffer = fill;
    manager.skip_input_data = skip;
    manager.resync_to_restart = jpeg_resync_to_restart;
    manager.term_source = end;
    return &manager;
}

} // namespace quorvia::engine

#include "engine/codecs/avif/HeifLibrary.h"

#include "engine/codecs/SharedLibrary.h"

#include <optional>

namespace quorvia::engine {

namespace {

std::optional<HeifLibrary> load()
{
    SharedLibrary library("libheif.so.1", "heif_");
    decltype(&::heif_init) init = nullptr;
    HeifLibrary found;
    library.find("init", init);
    library.find("context_alloc", found.context_alloc);
    library.find("context_free", found.context_free);
    library.find("context_set_maximum_image_size_limit", found.context_set_maximum_image_size_limit);
    library.find("context_read_from_memory_without_copy", found.context_read_from_memory_without_copy);
    library.find("context_get_primary_image_handle", found.context_get_primary_image_handle);
    library.find("image_handle_release", found.image_handle_release);
    library.find("image_handle_get_width", found.image_handle_get_width);
    library.find("image_handle_get_height", found.image_handle_get_height);
    library.find("image_handle_get_luma_bits_per_pixel", found.image_handle_get_luma_bits_per_pixel);
    library.find("image_handle_has_alpha_channel", found.image_handle_has_alpha_channel);
    library.find("image_handle_is_premultiplied_alpha", found.image_handle_is_premultiplied_alpha);
    library.find("image_handle_get_raw_color_profile_size", found.image_handle_get_raw_color_profile_size);
    library.find("image_handle_get_raw_color_profile", found.image_handle_get_raw_color_profile);
    library.find("decode_image", found.decode_image);
    library.find("image_release", found.image_release);
    library.find("image_get_width", found.image_get_width);
    library.find("image_get_height", found.image_get_height);
    library.find("image_get_bits_per_pixel_range", found.image_get_bits_per_pixel_range);
    library.find("image_get_chroma_format", found.image_get_chroma_format);
    library.find("image_get_plane_readonly", found.image_get_plane_readonly);
    // Never undone: a thread may be in the library for as long as the program runs.
    if (!library.isWhole() || init(nullptr).code != heif_error_Ok)
        return std::nullopt;
    return found;
}

} // namespace

const HeifLibrary* HeifLibrary::get()
{
    static const std::optional<HeifLibrary> library = load();
    return library ? &*library : nullptr;
}

} // namespace quorvia::engine

// libheif, loaded when the first AVIF or HEIF picture comes: the program starts without it and the decoders
// that it brings. The first call costs that load, the others nothing.
#pragma once

#include <libheif/heif.h>

namespace quorvia::engine {

/// The functions of the library that are used, by their names there without "heif_".
struct HeifLibrary
{
    decltype(&::heif_context_alloc) context_alloc = nullptr;
    decltype(&::heif_context_free) context_free = nullptr;
    decltype(&::heif_context_set_maximum_image_size_limit) context_set_maximum_image_size_limit = nullptr;
    decltype(&::heif_context_read_from_memory_without_copy) context_read_from_memory_without_copy = nullptr;
    decltype(&::heif_context_get_primary_image_handle) context_get_primary_image_handle = nullptr;
    decltype(&::heif_image_handle_release) image_handle_release = nullptr;
    decltype(&::heif_image_handle_get_width) image_handle_get_width = nullptr;
    decltype(&::heif_image_handle_get_height) image_handle_get_height = nullptr;
    decltype(&::heif_image_handle_get_luma_bits_per_pixel) image_handle_get_luma_bits_per_pixel = nullptr;
    decltype(&::heif_image_handle_has_alpha_channel) image_handle_has_alpha_channel = nullptr;
    decltype(&::heif_image_handle_is_premultiplied_alpha) image_handle_is_premultiplied_alpha = nullptr;
    decltype(&::heif_image_handle_get_raw_color_profile_size) image_handle_get_raw_color_profile_size =
        nullptr;
    decltype(&::heif_image_handle_get_raw_color_profile) image_handle_get_raw_color_profile = nullptr;
    decltype(&::heif_decode_image) decode_image = nullptr;
    decltype(&::heif_image_release) image_release = nullptr;
    decltype(&::heif_image_get_width) image_get_width = nullptr;
    decltype(&::heif_image_get_height) image_get_height = nullptr;
    decltype(&::heif_image_get_bits_per_pixel_range) image_get_bits_per_pixel_range = nullptr;
    decltype(&::heif_image_get_chroma_format) image_get_chroma_format = nullptr;
    decltype(&::heif_image_get_plane_readonly) image_get_plane_readonly = nullptr;

    /// The library, made ready once; null when it is not there. Safe from any thread.
    static const HeifLibrary* get();
};

} // namespace quorvia::engine

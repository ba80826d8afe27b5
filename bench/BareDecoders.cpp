#include "BareDecoders.h"

#include <cstdio>
#include <cstdlib>
#include <vector>

// jpeglib.h wants FILE to be known
// clang-format off
#include <jpeglib.h>
// clang-format on
#include <png.h>
#include <tiffio.h>

namespace quorvia::bench {

namespace {

[[noreturn]] void giveUp(const char* path)
{
    std::fprintf(stderr, "%s: cannot be decoded\n", path);
    std::exit(1);
}

std::FILE* opened(const char* path)
{
    std::FILE* file = std::fopen(path, "rb");
    if (!file)
        giveUp(path);
    return file;
}

/// Not filled: the libraries write every pixel.
BarePicture blank(int width, int height)
{
    return {width, height,
            std::unique_ptr<std::uint32_t[]>(new std::uint32_t[size_t(width) * size_t(height)])};
}

unsigned char* rowOf(const BarePicture& picture, unsigned y)
{
    return reinterpret_cast<unsigned char*>(picture.pixels.get() + size_t(picture.width) * y);
}

} // namespace

BarePicture bareJpeg(const char* path, unsigned eighths)
{
    std::FILE* file = opened(path);
    jpeg_decompress_struct decoder = {};
    jpeg_error_mgr errors = {};
    decoder.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&decoder);
    jpeg_stdio_src(&decoder, file);
    jpeg_read_header(&decoder, TRUE);
    decoder.scale_num = eighths;
    decoder.scale_denom = 8;
    decoder.out_color_space = JCS_EXT_BGRA;
    jpeg_start_decompress(&decoder);
    BarePicture picture = blank(int(decoder.output_width), int(decoder.output_height));
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPROW row = rowOf(picture, decoder.output_scanline);
        jpeg_read_scanlines(&decoder, &row, 1);
    }
    jpeg_finish_decompress(&decoder);
    jpeg_destroy_decompress(&decoder);
    std::fclose(file);
    return picture;
}

BarePicture barePng(const char* path)
{
    std::FILE* file = opened(path);
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    if (setjmp(png_jmpbuf(png)) != 0)
        giveUp(path);
    png_init_io(png, file);
    png_read_info(png, info);
    png_set_filler(png, 0xff, PNG_FILLER_AFTER);
    png_set_bgr(png);
    BarePicture picture = blank(int(png_get_image_width(png, info)), int(png_get_image_height(png, info)));
    for (int y = 0; y < picture.height; ++y)
        png_read_row(png, rowOf(picture, unsigned(y)), nullptr);
    png_read_end(png, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    std::fclose(file);
    return picture;
}

BarePicture bareTiff(const char* path)
{
    TIFF* tiff = TIFFOpen(path, "r");
    if (!tiff)
        giveUp(path);
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t stripRows = 0;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_ROWSPERSTRIP, &stripRows);
    BarePicture picture = blank(int(width), int(height));
    std::vector<unsigned char> strip(static_cast<size_t>(TIFFStripSize(tiff)));
    std::uint32_t* out = picture.pixels.get();
    const std::uint32_t* const end = out + size_t(width) * height;
    for (std::uint32_t index = 0; index < TIFFNumberOfStrips(tiff); ++index) {
        const tmsize_t got = TIFFReadEncodedStrip(tiff, index, strip.data(), tmsize_t(strip.size()));
        if (got < 0)
            giveUp(path);
        const unsigned char* in = strip.data();
        for (const unsigned char* last = in + got; in + 3 <= last && out < end; in += 3)
            *out++ = 0xff000000U | std::uint32_t(in[0]) << 16 | std::uint32_t(in[1]) << 8 | in[2];
    }
    TIFFClose(tiff);
    return picture;
}

} // namespace quorvia::bench

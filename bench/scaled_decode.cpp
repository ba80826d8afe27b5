// The other yardstick: the bare library's decode of a JPEG at the smallest scale that covers a box, file to
// pixels. scaled_decode FILE WIDTH HEIGHT RUNS prints the median milliseconds and the size decoded to.
#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <vector>

// jpeglib.h wants FILE to be known
// clang-format off
#include <cstdio>
#include <jpeglib.h>
// clang-format on

namespace {

struct Size
{
    unsigned width = 0;
    unsigned height = 0;
};

Size decode(const char* path, double boxWidth, double boxHeight)
{
    std::FILE* file = std::fopen(path, "rb");
    if (!file) {
        std::perror(path);
        std::exit(1);
    }
    jpeg_decompress_struct decoder = {};
    jpeg_error_mgr errors = {};
    decoder.err = jpeg_std_error(&errors);
    jpeg_create_decompress(&decoder);
    jpeg_stdio_src(&decoder, file);
    jpeg_read_header(&decoder, TRUE);
    const double fit = std::min({1.0, boxWidth / decoder.image_width, boxHeight / decoder.image_height});
    decoder.scale_denom = 8;
    for (decoder.scale_num = 1; decoder.scale_num < 8; ++decoder.scale_num) {
        jpeg_calc_output_dimensions(&decoder);
        if (decoder.output_width >= fit * decoder.image_width &&
            decoder.output_height >= fit * decoder.image_height)
            break;
    }
    decoder.out_color_space = JCS_EXT_BGRX;
    jpeg_start_decompress(&decoder);
    const Size size{decoder.output_width, decoder.output_height};
    std::vector<JSAMPLE> pixels(size_t(4) * size.width * size.height);
    while (decoder.output_scanline < decoder.output_height) {
        JSAMPROW row = pixels.data() + size_t(4) * size.width * decoder.output_scanline;
        jpeg_read_scanlines(&decoder, &row, 1);
    }
    jpeg_finish_decompress(&decoder);
    jpeg_destroy_decompress(&decoder);
    std::fclose(file);
    return size;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 5) {
        std::fprintf(stderr, "usage: scaled_decode FILE WIDTH HEIGHT RUNS\n");
        return 2;
    }
    std::vector<double> times(static_cast<size_t>(std::max(1, std::atoi(argv[4]))));
    Size size;
    for (double& time : times) {
        const auto begin = std::chrono::steady_clock::now();
        size = decode(argv[1], std::atof(argv[2]), std::atof(argv[3]));
        time = std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
    }
    std::nth_element(times.begin(), times.begin() + long(times.size() / 2), times.end());
    std::printf("%.1f ms to %u x %u\n", times[times.size() / 2], size.width, size.height);
    return 0;
}

// How long the engine's decoders take beside the bare libraries: decode_ratio PICTURES [RUNS], where PICTURES
// is the directory that bench/ratios fills. Pixels are compared before anything is timed.
#include "BareDecoders.h"
#include "engine/Codec.h"
#include "Ratio.h"

#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

using namespace quorvia;
using namespace quorvia::bench;

namespace {

QImage decoded(const std::string& path, QSize box)
{
    const auto source = engine::ByteSource::open(QString::fromStdString(path));
    if (!source)
        return {};
    const auto decoder = engine::openDecoder(*source, {});
    if (!decoder)
        return {};
    const engine::CancelFlag goOn{false};
    auto picture = (*decoder)->decode(1, box, goOn);
    return picture && picture->complete ? (*std::move(picture)).image : QImage();
}

bool isSame(const QImage& ours, const BarePicture& theirs)
{
    if (ours.width() != theirs.width || ours.height() != theirs.height || ours.depth() != 32)
        return false;
    const auto width = static_cast<size_t>(theirs.width);
    for (int y = 0; y < theirs.height; ++y) {
        if (std::memcmp(ours.constScanLine(y), theirs.pixels.get() + width * size_t(y), 4 * width) != 0)
            return false;
    }
    return true;
}

struct Case
{
    const char* name;
    const char* file;
    QSize box; ///< pixels; empty for the whole picture
    std::function<BarePicture(const char*)> bare;
    double limit;
};

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: decode_ratio PICTURES [RUNS [WORD]]\n");
        return 2;
    }
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 15;
    const auto wholeJpeg = [](const char* path) { return bareJpeg(path); };
    const auto quarterJpeg = [](const char* path) { return bareJpeg(path, 2); };
    const auto eighthJpeg = [](const char* path) { return bareJpeg(path, 1); };
    const Case cases[] = {
        {"JPEG, 24 MP", "photo-24mp.jpg", {}, wholeJpeg, 1.1},
        {"TIFF, 24 MP, not compressed", "photo-24mp.tif", {}, bareTiff, 1.1},
        {"PNG, 24 MP, RGB", "photo-24mp.png", {}, barePng, 0.7},
        {"TIFF, 24 MP, LZW in strips", "photo-24mp-lzw.tif", {}, bareTiff, 0.65},
        {"TIFF, 24 MP, deflate in strips", "photo-24mp-deflate.tif", {}, bareTiff, 0.65},
        {"JPEG, 24 MP for a screen of 1600 x 1000", "photo-24mp.jpg", QSize(1600, 1000), quarterJpeg, 1.25},
        {"JPEG, 12 MP for a thumbnail of 193 x 143", "photo-12mp.jpg", QSize(193, 143), eighthJpeg, 1.1},
    };
    for (const Case& one : cases) {
        if (argc > 3 && !std::strstr(one.name, argv[3]))
            continue;
        const std::string path = std::string(argv[1]) + '/' + one.file;
        const auto ours = [&] { return decoded(path, one.box); };
        const auto theirs = [&] { return one.bare(path.c_str()); };
        if (!isSame(ours(), theirs())) {
            std::fprintf(stderr, "%s: not the library's pixels\n", path.c_str());
            return 1;
        }
        compare(one.name, ours, theirs, runs, one.limit);
    }
    return 0;
}

// What read-ahead costs the picture that is asked for: read_ahead_ratio PICTURES [RUNS] opens a picture for a
// screen while another one is being read ahead, in turn with the same open without, to the first picture.
// PICTURES is the directory that bench/ratios fills.
#include "engine/ImageLoader.h"
#include "Ratio.h"

#include <cstdlib>
#include <string>
#include <thread>

using namespace quorvia::engine;
using namespace quorvia::bench;

namespace {

constexpr QSize box(1400, 875);

/// A loader that has been reading `ahead` (empty: nothing) for 30 to 170 milliseconds.
std::unique_ptr<ImageLoader> busyLoader(const QString& ahead, int run)
{
    auto loader = std::make_unique<ImageLoader>();
    if (!ahead.isEmpty())
        loader->setNeighbours({ahead}, box);
    std::this_thread::sleep_for(std::chrono::milliseconds(30 + run % 5 * 35));
    return loader;
}

/// Milliseconds to the first picture of `wanted`; the end of the loader does not count.
double opened(const QString& wanted, const QString& ahead, int run)
{
    const auto loader = busyLoader(ahead, run);
    return millisecondsOf([&] {
        if (!loader->load(wanted, 1, box)->first())
            std::exit(1);
    });
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: read_ahead_ratio PICTURES [RUNS]\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]) + QLatin1Char('/');
    const int runs = argc > 2 ? std::max(1, std::atoi(argv[2])) : 15;
    constexpr double limit = 1.1;
    struct Case
    {
        const char* wanted;
        const char* ahead;
    };
    for (const Case& one :
         {Case{"photo-24mp.jpg", "photo-24mp.png"}, Case{"photo-24mp.tif", "photo-24mp.png"},
          Case{"photo-24mp.png", "photo-24mp-deflate.tif"}, Case{"photo-24mp.png", "photo-24mp.jpg"}}) {
        const QString path = folder + QLatin1String(one.wanted);
        const QString ahead = folder + QLatin1String(one.ahead);
        std::vector<double> with;
        std::vector<double> without;
        for (int run = -1; run < runs; ++run) {
            const double a = opened(path, ahead, run + 1);
            const double b = opened(path, QString(), run + 1);
            if (run >= 0) {
                with.push_back(a);
                without.push_back(b);
            }
        }
        const Ratio found{medianOf(with), medianOf(without), limit};
        std::printf("%s while %s is read ahead : alone\n%44s ours %7.1f ms  theirs %7.1f ms  ratio %5.2f  "
                    "aim %.2f  %s\n",
                    one.wanted, one.ahead, "", found.ours, found.theirs, found.ratio(), limit,
                    found.met() ? "met" : "NOT MET");
    }
    return 0;
}

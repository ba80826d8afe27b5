// What read-ahead costs the picture that is asked for, and whether it keeps to its cap: read_ahead_ratio
// PICTURES [RUNS] opens a picture for a screen while another one is being read ahead, in turn with the same
// open without, to the first picture; 31 times or more. PICTURES is the directory that bench/ratios fills.
#include "engine/ImageLoader.h"
#include "Ratio.h"

#include <cstdlib>
#include <string>
#include <thread>
#include <utility>

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

/// The most bytes kept at any time while `paths` are read ahead whole under a cap of `cap` bytes. Looks every
/// millisecond until nothing has changed for two seconds.
qint64 mostKept(const QStringList& paths, qint64 cap)
{
    ImageLoader loader;
    loader.setReadAheadCap(cap);
    loader.setNeighbours(paths, QSize());
    qint64 most = 0;
    qint64 last = 0;
    for (int still = 0; still < 2000; ++still) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        const qint64 now = loader.readAheadBytes();
        most = std::max(most, now);
        if (now != std::exchange(last, now))
            still = 0;
    }
    return most;
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2) {
        std::fprintf(stderr, "usage: read_ahead_ratio PICTURES [RUNS]\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]) + QLatin1Char('/');
    constexpr int fewest = 31; // the shortest case spreads by a third from run to run
    const int runs = std::max(fewest, argc > 2 ? std::atoi(argv[2]) : 0);
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
        // A few milliseconds go whatever is done: two threads have to end and to give back their memory.
        constexpr double unseen = 5; // milliseconds, a third of a frame
        const double alone = medianOf(without);
        const Ratio found{medianOf(with), alone, std::max(limit, 1 + unseen / alone)};
        std::printf("%s while %s is read ahead : alone\n%44s ours %7.1f ms  theirs %7.1f ms  ratio %5.2f  "
                    "aim %.2f  %s\n",
                    one.wanted, one.ahead, "", found.ours, found.theirs, found.ratio(), found.limit,
                    found.met() ? "met" : "NOT MET");
    }
    constexpr qint64 cap = qint64(220) << 20; // two pictures of 24 MP find room
    const qint64 most =
        mostKept({folder + QLatin1String("photo-24mp.jpg"), folder + QLatin1String("photo-24mp.tif"),
                  folder + QLatin1String("photo-24mp.png")},
                 cap);
    const Ratio kept{double(most) / (1 << 20), double(cap) / (1 << 20), 1.0};
    std::printf("Three of 24 MP read ahead whole : cap\n%44s kept %7.1f MiB cap  %7.1f MiB ratio %5.2f  "
                "aim %.2f  %s\n",
                "", kept.ours, kept.theirs, kept.ratio(), 1.0, kept.met() && most > 0 ? "met" : "NOT MET");
    return 0;
}

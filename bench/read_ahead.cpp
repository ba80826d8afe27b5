// What read-ahead costs the picture that is asked for. read_ahead WANTED AHEAD RUNS opens WANTED for a screen
// while AHEAD is being read ahead, in turn with the same open without, and prints the medians to the first
// picture and their ratio.
#include "engine/ImageLoader.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

using namespace quorvia::engine;

namespace {

constexpr QSize box(1400, 875);

double median(std::vector<double> values)
{
    std::nth_element(values.begin(), values.begin() + long(values.size() / 2), values.end());
    return values[values.size() / 2];
}

/// Milliseconds until the first picture of `wanted`, asked for 30 ms to 170 ms after `ahead` was named (null:
/// not).
double open(const QString& wanted, const QString& ahead, int run)
{
    ImageLoader loader;
    if (!ahead.isEmpty())
        loader.setNeighbours({ahead}, box);
    std::this_thread::sleep_for(std::chrono::milliseconds(30 + run % 5 * 35));
    const auto begin = std::chrono::steady_clock::now();
    const auto load = loader.load(wanted, 1, box);
    if (!load->first())
        std::exit(1);
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

} // namespace

int main(int argc, char* argv[])
{
    if (argc != 4) {
        std::fprintf(stderr, "usage: read_ahead WANTED AHEAD RUNS\n");
        return 2;
    }
    const QString wanted = QString::fromLocal8Bit(argv[1]);
    const QString ahead = QString::fromLocal8Bit(argv[2]);
    std::vector<double> with;
    std::vector<double> without;
    for (int run = -2; run < std::max(1, std::atoi(argv[3])); ++run) {
        const double a = open(wanted, ahead, run + 2);
        const double b = open(wanted, QString(), run + 2);
        if (run >= 0) {
            with.push_back(a);
            without.push_back(b);
        }
    }
    std::printf("%.1f ms while a read-ahead runs, %.1f ms without, ratio %.2f\n", median(with),
                median(without), median(with) / median(without));
    return 0;
}

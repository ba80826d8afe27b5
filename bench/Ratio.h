// Times two ways of doing the same, in turn, and tells how many times as long the first takes. Ratios of
// medians of interleaved runs hold on a machine whose speed wanders; times alone do not.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace quorvia::bench {

struct Ratio
{
    double ours = 0;   ///< milliseconds, median
    double theirs = 0; ///< the same
    double limit = 0;  ///< what ours / theirs should not exceed
    double ratio() const { return ours / theirs; }
    bool met() const { return ratio() <= limit; }
};

/// Milliseconds that one call of `work` takes.
template <class Work>
double millisecondsOf(const Work& work)
{
    const auto begin = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin).count();
}

/// The middle one of `times`, the upper of two; 0 when there are none.
inline double medianOf(std::vector<double> times)
{
    if (times.empty())
        return 0;
    const auto middle = times.begin() + std::ptrdiff_t(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

/// Calls `ours` and `theirs` in turn, `runs` times each after one that does not count, and prints one line:
/// name, medians, ratio, aim. What they return is dropped outside the measured time.
template <class Ours, class Theirs>
Ratio compare(const char* name, const Ours& ours, const Theirs& theirs, int runs, double limit)
{
    const auto timed = [](const auto& work) {
        decltype(work()) result{};
        return millisecondsOf([&] { result = work(); });
    };
    timed(ours);
    timed(theirs);
    std::vector<double> ourTimes;
    std::vector<double> theirTimes;
    for (int run = 0; run < runs; ++run) {
        ourTimes.push_back(timed(ours));
        theirTimes.push_back(timed(theirs));
    }
    const Ratio found{medianOf(ourTimes), medianOf(theirTimes), limit};
    std::printf("%-44s ours %7.1f ms  theirs %7.1f ms  ratio %5.2f  aim %.2f  %s\n", name, found.ours,
                found.theirs, found.ratio(), limit, found.met() ? "met" : "NOT MET");
    std::fflush(stdout);
    return found;
}

} // namespace quorvia::bench

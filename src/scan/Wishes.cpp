#include "scan/Wishes.h"

#include <algorithm>
#include <cctype>
#include <cmath>

namespace quorvia::scan {

namespace {

std::string lowered(std::string text)
{
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

/// The words by which devices call a mode, the plainest first.
std::span<const char* const> wordsFor(Mode mode)
{
    static constexpr const char* gray[] = {"gray", "grey"};
    static constexpr const char* color[] = {"color", "colour"};
    return mode == Mode::Gray ? std::span<const char* const>(gray) : std::span<const char* const>(color);
}

/// Modes with one bit a sample, and those that only imitate more.
bool isCoarse(const std::string& name)
{
    constexpr const char* words[] = {"lineart", "halftone", "binary", "dither"};
    return std::any_of(std::begin(words), std::end(words),
                       [&name](const char* word) { return name.find(word) != std::string::npos; });
}

} // namespace

std::optional<std::string> modeNamed(std::span<const std::string> names, Mode mode)
{
    const auto first = [names](const auto& fits) -> std::optional<std::string> {
        const auto found = std::find_if(names.begin(), names.end(),
                                        [&fits](const std::string& name) { return fits(lowered(name)); });
        return found == names.end() ? std::nullopt : std::optional(*found);
    };
    for (const char* word : wordsFor(mode)) {
        if (auto exact = first([word](const std::string& name) { return name == word; }))
            return exact;
    }
    for (const char* word : wordsFor(mode)) {
        auto holds = first([word](const std::string& name) {
            return name.find(word) != std::string::npos && !isCoarse(name);
        });
        if (holds)
            return holds;
    }
    return {};
}

double nearestAllowed(const Allowed& allowed, double wanted)
{
    if (!allowed.values.empty())
        return *std::min_element(allowed.values.begin(), allowed.values.end(), [wanted](double a, double b) {
            const double farA = std::abs(a - wanted);
            const double farB = std::abs(b - wanted);
            return farA < farB || (farA == farB && a < b);
        });
    if (allowed.most < allowed.least)
        return wanted;
    const double inside = std::clamp(wanted, allowed.least, allowed.most);
    if (!(allowed.step > 0))
        return inside;
    const double steps = std::ceil((inside - allowed.least) / allowed.step - 0.5);
    const double last = std::floor((allowed.most - allowed.least) / allowed.step);
    return allowed.least + std::min(steps, last) * allowed.step;
}

} // namespace quorvia::scan

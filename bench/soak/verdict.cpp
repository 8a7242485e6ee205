#include "verdict.h"

#include <algorithm>
#include <cstdio>

namespace {

/// Values of one figure within a part of the samples, sorted.
std::vector<long long> valuesOf(const std::vector<Figures>& samples, std::size_t figure,
                                std::size_t from, std::size_t to)
{
    std::vector<long long> values;
    for (std::size_t i = from; i < to; ++i)
        values.push_back(samples[i][figure].value);
    std::sort(values.begin(), values.end());
    return values;
}

/// @param isMemory of which some comes and goes with caches
bool hasGrown(bool isMemory, const std::vector<long long>& early,
              const std::vector<long long>& late)
{
    if (!isMemory)
        return late.front() > early.back();
    constexpr double kMost = 1.05;
    const auto median = [](const std::vector<long long>& sorted) {
        return static_cast<double>(sorted[sorted.size() / 2]);
    };
    return median(late) > kMost * median(early);
}

bool endsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size()
           && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

} // namespace

std::vector<std::string> grownIn(const std::vector<Figures>& samples)
{
    std::vector<std::string> grown;
    const std::size_t tenth = samples.size() / 10;
    if (tenth == 0)
        return grown;
    std::printf("%-18s %19s %19s\n", "", "after the 1st tenth", "at the end");
    for (std::size_t figure = 0; figure < samples.front().size(); ++figure) {
        const auto& [name, value, isJudged] = samples.front()[figure];
        const auto early = valuesOf(samples, figure, tenth, 2 * tenth);
        const auto late = valuesOf(samples, figure, samples.size() - tenth, samples.size());
        const bool grows = isJudged && hasGrown(endsWith(name, "_kb"), early, late);
        if (grows)
            grown.push_back(name);
        const auto range = [](const std::vector<long long>& sorted) {
            return std::to_string(sorted.front()) + " to " + std::to_string(sorted.back());
        };
        std::printf("%-18s %19s %19s%s\n", name.c_str(), range(early).c_str(), range(late).c_str(),
                    grows ? "  GROWN" : "");
    }
    return grown;
}

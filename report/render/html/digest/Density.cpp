#include "Density.hpp"

#include <algorithm>
#include <utility>

namespace Report::Html {
namespace {

constexpr std::size_t mostBins = 4096;
constexpr std::size_t mostSegments = 5;
constexpr std::int64_t leastGap = 600'000'000;  // microseconds

using Bins = std::map<std::int64_t, LevelCounts>;

std::int64_t floorDivided(std::int64_t number, std::int64_t divisor) {
    return number / divisor - (number % divisor < 0 ? 1 : 0);
}

void addCounts(LevelCounts& sum, const LevelCounts& counts) {
    for (std::size_t level = 0; level < sum.size(); ++level) {
        sum.at(level) += counts.at(level);
    }
}

/// Bins without a long gap between them, from the first to the last.
struct Segment {
    std::int64_t first;
    std::int64_t last;
    std::int64_t length() const { return last - first + 1; }
};

/// The longest gap between neighbours inside a segment, as the bins on both sides of it.
Segment longestGap(const Bins& bins, const Segment& segment) {
    Segment longest{segment.first, segment.first};
    std::int64_t before = segment.first;
    for (auto bin = bins.find(segment.first); bin != bins.end() && bin->first <= segment.last; ++bin) {
        if (bin->first - before > longest.last - longest.first) {
            longest = {before, bin->first};
        }
        before = bin->first;
    }
    return longest;
}

std::int64_t lengthOf(const std::vector<Segment>& segments) {
    std::int64_t length = 0;
    for (const Segment& segment : segments) {
        length += segment.length();
    }
    return length;
}

/// Splits where a gap is longer than most of what the picture shows.
std::vector<Segment> segmentsOf(const Bins& bins, std::int64_t leastBins) {
    std::vector<Segment> segments{{bins.begin()->first, bins.rbegin()->first}};
    while (segments.size() < mostSegments) {
        const auto widest = std::ranges::max_element(segments, {}, [&](const Segment& segment) {
            const Segment gap = longestGap(bins, segment);
            return gap.last - gap.first;
        });
        const Segment gap = longestGap(bins, *widest);
        const std::int64_t length = gap.last - gap.first;
        if (length < leastBins || length / 3 < lengthOf(segments) / 5) {  // three fifths
            break;
        }
        const Segment after{gap.last, widest->last};
        widest->last = gap.first;
        segments.insert(widest + 1, after);
    }
    return segments;
}

}  // namespace

std::size_t levelIndex(const std::optional<Level>& level) {
    return level ? static_cast<std::size_t>(*level) : LevelCounts{}.size() - 1;
}

void Density::add(const Time& time, const std::optional<Level>& level) {
    ++bins[floorDivided(time.time_since_epoch().count(), width)].at(levelIndex(level));
    while (bins.size() > mostBins) {
        coarsen();
    }
}

void Density::coarsen() {
    Bins wider;
    for (const auto& [bin, counts] : bins) {
        addCounts(wider[floorDivided(bin, 2)], counts);
    }
    bins = std::move(wider);
    width *= 2;
}

std::vector<DensityColumn> Density::columns(std::size_t most) const {
    std::vector<DensityColumn> columns;
    if (bins.empty()) {
        return columns;
    }
    const std::vector<Segment> segments = segmentsOf(bins, leastGap / width);
    const auto wanted = static_cast<std::int64_t>(most);
    const std::int64_t step = std::max<std::int64_t>(1, (lengthOf(segments) + wanted - 1) / wanted);
    const auto timeOf = [&](std::int64_t bin) { return Time{Time::duration{bin * width}}; };
    for (const Segment& segment : segments) {
        auto bin = bins.lower_bound(segment.first);
        for (std::int64_t begin = segment.first; begin <= segment.last; begin += step) {
            DensityColumn column{timeOf(begin), timeOf(begin + step), {}, begin == segment.first};
            for (; bin != bins.end() && bin->first < begin + step; ++bin) {
                addCounts(column.counts, bin->second);
            }
            columns.push_back(column);
        }
    }
    columns.front().afterGap = false;
    return columns;
}

}  // namespace Report::Html

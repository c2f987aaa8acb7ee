#include <algorithm>
#include <chrono>
#include <cmath>
#include <map>

#include "Phrases.hpp"
#include "Sections.hpp"

namespace Report::Html {
namespace {

using Age = std::chrono::microseconds;

constexpr Age fresh = std::chrono::seconds{120};
constexpr double width = 1000;  // of the picture, in its own units

struct Collector {
    std::vector<const Part*> parts;
    Time newest{};
};

std::string collectorOf(const Part& part) {
    const std::size_t slash = part.name.find('/');
    return slash == std::string::npos ? "(no folder)" : part.name.substr(0, slash);
}

std::map<std::string, Collector> collectorsOf(const Package& package) {
    std::map<std::string, Collector> collectors;
    for (const Part& part : package.parts) {
        if (part.time) {
            Collector& collector = collectors[collectorOf(part)];
            collector.newest = collector.parts.empty() ? *part.time : std::max(collector.newest, *part.time);
            collector.parts.push_back(&part);
        }
    }
    return collectors;
}

/// Where an age stands on the logarithmic scale: 0 s at 0, a minute, an hour, a day and a year in equal
/// steps, as the heading of the column names them.
double positionOf(Age age) {
    constexpr std::array steps{0.0, 60.0, 3600.0, 86400.0, 31557600.0};
    const double seconds = std::chrono::duration<double>(age).count();
    const auto* const after = std::upper_bound(steps.begin() + 1, steps.end(), seconds);
    if (after == steps.end()) {
        return width;
    }
    const auto step = static_cast<double>(after - steps.begin() - 1);
    const double low = std::log1p(*(after - 1));
    const double part = (std::log1p(seconds) - low) / (std::log1p(*after) - low);
    return width * (step + part) / static_cast<double>(steps.size() - 1);
}

void addTick(std::string& path, Age age) {
    const double inside = std::clamp(positionOf(age), 2.0, width - 2);
    path += 'M' + std::to_string(std::lround(inside)) + " 0V20";
}

struct OldMember {
    const Part* part;
    Age age;
};

Fields collectorRow(const std::string& name, const Collector& collector, std::vector<OldMember>& old) {
    std::map<long, Age> ticks;  // one tick for members at the same place
    const Part* oldest = collector.parts.front();
    for (const Part* part : collector.parts) {
        const Age age = spanBetween(*part->time, collector.newest);
        ticks.emplace(std::lround(positionOf(age)), age);
        oldest = *part->time < *oldest->time ? part : oldest;
        if (age > fresh) {
            old.push_back({part, age});
        }
    }
    std::string freshPath;
    std::string oldPath;
    std::string limit;
    for (const auto& [position, age] : ticks) {
        addTick(age > fresh ? oldPath : freshPath, age);
    }
    addTick(limit, fresh);
    const Age oldestAge = spanBetween(*oldest->time, collector.newest);
    return Fields{}
        .set("collector", shortened(name, 100))
        .set("members", grouped(collector.parts.size()))
        .set("newest", timeText(collector.newest))
        .set("limit", limit)
        .set("fresh", freshPath)
        .set("old", oldPath)
        .set("oldest", collector.parts.size() == 1
                           ? std::string{}
                           : spanText(oldestAge) + " older: " + shortened(oldest->name, 200));
}

}  // namespace

void writeFreshness(std::ostream& out, const View& view) {
    std::vector<OldMember> old;
    Rows rows;
    for (const auto& [name, collector] : collectorsOf(*view.package)) {
        if (rows.size() == view.allowance.rows) {
            break;
        }
        rows.push_back(collectorRow(name, collector, old));
    }
    if (rows.empty()) {
        return;
    }
    std::ranges::stable_sort(old, std::ranges::greater{}, &OldMember::age);
    Rows oldRows;
    for (const OldMember& member : old) {
        if (oldRows.size() == view.allowance.rows) {
            break;
        }
        oldRows.push_back(
            Fields{}.set("name", shortened(member.part->name, 200)).set("age", spanText(member.age)));
    }
    const std::size_t left = old.size() - oldRows.size();
    fill(out, "freshness",
         Fields{}
             .set("id", view.id)
             .set("label", view.label)
             .set("level", levelText(view.level))
             .set("rows", std::move(rows))
             .set("hasOld", !old.empty())
             .set("oldCount", grouped(old.size()))
             .set("oldMembers", std::move(oldRows))
             .set("leftOut", leftOutNote(left, "member")));
}

}  // namespace Report::Html

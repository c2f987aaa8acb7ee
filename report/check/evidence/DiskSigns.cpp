#include "DiskSigns.hpp"

#include <algorithm>
#include <limits>
#include <optional>
#include <string>

#include "Content.hpp"

namespace Report {
namespace {

constexpr std::size_t maximumSigns = 2;

/// One step in the order of writing. Some steps write several files, in an unknown order.
struct Step {
    int order;
    const Part* part;
    PartPlace place;

    bool isBlocked() const { return part->size == 0 || endsAtPage(*part) || part->state == State::cut; }
    /// Whether only a failed write leaves such a file.
    bool isSign() const {
        const bool emptied = part->size == 0 && (isNeverEmpty(place) || place.collector == Collector::fuse);
        return emptied || (endsAtPage(*part) && !place.isDump());
    }
};

bool isOfCollector(const PartPlace& place) {
    return place.collector == Collector::fuse || place.collector == Collector::mmi ||
           place.collector == Collector::ti;
}

bool wasRead(const Part& part) {
    return !part.member.empty() && part.state != State::stale && part.state != State::notRead;
}

/// The files of the latest run, the last ones first. A run writes the Linux logs after those of its
/// collectors; older ones are left over from an earlier run.
std::vector<Step> stepsOf(const Package& package) {
    std::vector<Step> steps;
    std::optional<Time> newest;
    for (const Part& part : package.parts) {
        const PartPlace place = placeOf(part.name);
        const int order = writeOrderOf(place);
        if (order >= 0 && wasRead(part)) {
            steps.push_back({order, &part, place});
            newest = isOfCollector(place) ? std::max(newest, part.time) : newest;
        }
    }
    std::erase_if(steps, [&](const Step& step) {
        return !isOfCollector(step.place) && step.part->time && step.part->time < newest;
    });
    std::ranges::stable_sort(steps, std::ranges::greater(), &Step::order);
    return steps;
}

bool onlyHistoryLogIsEmpty(const std::vector<Step>& steps) {
    return std::ranges::all_of(steps, [](const Step& step) {
        const bool isHistoryLog = step.place.isSharedLog() && step.place.collector == Collector::fuse;
        return !step.isBlocked() || (isHistoryLog && step.part->size == 0);
    });
}

Evidence evidenceOf(const Step& step) {
    return {step.part->name, step.part->size == 0
                                 ? "0 bytes"
                                 : "ends inside a line, at " + std::to_string(step.part->size) + " bytes"};
}

}  // namespace

DiskSigns::DiskSigns(const Package& package) : fullFrom(std::numeric_limits<int>::max()) {
    const std::vector<Step> steps = stepsOf(package);
    for (auto step = steps.begin(); step != steps.end();) {
        const auto end =
            std::find_if(step, steps.end(), [&](const Step& next) { return next.order != step->order; });
        const bool blocked = std::all_of(step, end, [](const Step& one) { return one.isBlocked(); });
        const bool filledUp = std::any_of(step, end, [](const Step& one) { return one.isSign(); });
        if (blocked || filledUp) {
            fullFrom = step->order;
        }
        for (; step != end; ++step) {
            if (step->isSign() && signs.size() < maximumSigns) {
                signs.push_back(evidenceOf(*step));
            }
            syslibEmpty = syslibEmpty || (step->place.isSharedLog() && step->part->size == 0);
        }
        if (!blocked) {
            break;
        }
    }
    if (onlyHistoryLogIsEmpty(steps)) {  // perhaps nothing was logged
        signs.clear();
        fullFrom = std::numeric_limits<int>::max();
    }
}

bool DiskSigns::explains(const Part& part, const PartPlace& place) const {
    const bool blocked = part.size == 0 || endsAtPage(part) || part.state == State::cut;
    return !signs.empty() && blocked && !part.member.empty() && writeOrderOf(place) >= fullFrom;
}

bool DiskSigns::mayExplain(const Part& part, const PartPlace& place) const {
    const PartPlace lastReply = placeOf("mmi/sfn/HeapStats");
    return signs.empty() && syslibEmpty && fullFrom <= writeOrderOf(lastReply) && part.size == 0 &&
           !part.member.empty() && writeOrderOf(place) >= fullFrom;
}

}  // namespace Report

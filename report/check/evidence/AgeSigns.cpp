#include "AgeSigns.hpp"

#include <algorithm>
#include <chrono>

#include "PartTable.hpp"

namespace Report {
namespace {

// Between two files, korvel waits up to a second for each dump, and does not wait for others. Times in a
// package are whole seconds, and a busy board adds some.
constexpr std::chrono::seconds longestWait{1};
constexpr std::chrono::seconds roundedTime{1};
constexpr std::chrono::seconds timeOfBusyBoard{2};

bool hasTimeOfWriting(const Part& part, const PartPlace& place) {
    return place.known != nullptr && part.time && !part.member.empty() && part.state != State::stale &&
           part.state != State::notRead;
}

}  // namespace

/// A file in the order of writing.
struct AgeSigns::Step {
    int order;
    bool isDump;
    const Part* part;

    Time time() const { return *part->time; }

    /// The longest pause between this file and a later one of the same run, on a board that is not busy.
    std::chrono::seconds pauseBefore(const Step& later) const {
        static const int afterDumps = writeOrderOf(placeOf("ti/resmgr_server")) + 1;
        const int waits = isDump ? std::min(later.order, afterDumps) - order : 1;
        return waits * longestWait + roundedTime;
    }
};

AgeSigns::AgeSigns(const Package& package) {
    const std::vector<Step> steps = stepsOf(package);
    findNewerPredecessors(steps);
    findLateSuccessors(steps);
}

std::vector<AgeSigns::Step> AgeSigns::stepsOf(const Package& package) {
    std::vector<Step> steps;
    for (const Part& part : package.parts) {
        const PartPlace place = placeOf(part.name);
        if (hasTimeOfWriting(part, place)) {
            steps.push_back({writeOrderOf(place), place.isDump(), &part});
        }
    }
    std::ranges::stable_sort(steps, {}, &Step::order);
    return steps;
}

void AgeSigns::findNewerPredecessors(const std::vector<Step>& steps) {
    const Step* newest = nullptr;
    for (const Step& step : steps) {
        if (newest != nullptr && step.time() < newest->time()) {
            signs.emplace(step.part, AgeSign{newest->part, true});
        } else {
            newest = &step;
        }
    }
}

void AgeSigns::findLateSuccessors(const std::vector<Step>& steps) {
    const Step* next = nullptr;  // of the latest run
    for (std::size_t index = steps.size(); index > 0; --index) {
        const Step& step = steps[index - 1];
        if (signs.contains(step.part)) {
            continue;
        }
        const Time::duration excess =
            next == nullptr ? Time::duration{-1} : next->time() - step.time() - step.pauseBefore(*next);
        const bool isClear = excess > timeOfBusyBoard;
        if (excess >= Time::duration{}) {
            signs.emplace(step.part, AgeSign{next->part, isClear});
        }
        next = isClear ? next : &step;
    }
}

std::optional<AgeSign> AgeSigns::signOf(const Part& part) const {
    const auto sign = signs.find(&part);
    return sign == signs.end() ? std::nullopt : std::optional(sign->second);
}

}  // namespace Report

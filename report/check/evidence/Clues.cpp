#include "Clues.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <initializer_list>

namespace Report {
namespace {

constexpr std::uint64_t collectionSize = std::uint64_t{48} << 20;  // bytes that one collection takes
constexpr std::chrono::seconds longestRun{120};

constexpr std::array<std::string_view, 6> knownProcesses{"netfp_proxy",   "netfp_server",   "netfp_master",
                                                         "resmgr_server", "iwf_dispatcher", "sfn_dispatcher"};

std::optional<RunReport> reportOf(const Package& package) {
    if (package.sidecarState != SidecarState::used || !package.sidecar) {
        return std::nullopt;
    }
    return RunReport(*package.sidecar);
}

std::optional<Time> beginOf(const Package& package) {
    if (package.sidecarState != SidecarState::used || !package.sidecar) {
        return std::nullopt;
    }
    const std::optional<Time> began = package.sidecar->began();
    const std::optional<Time> ended = package.sidecar->ended();
    return ended && began <= ended ? began : std::nullopt;
}

/// Whether the run that wrote the newest part of each collector also made the listing: it does so last.
bool isOfThisRun(const Package& package, const ProcessListing& listing) {
    if (listing.part() == nullptr || !listing.part()->time) {
        return false;
    }
    return std::ranges::all_of(
        std::initializer_list<Collector>{Collector::fuse, Collector::mmi, Collector::ti},
        [&](Collector collector) {
            const auto newest = newestOf(package, collector);
            const Time listed = *listing.part()->time;
            return !newest || (*newest <= listed && listed - *newest <= longestRun);
        });
}

/// The position of a part in the order in which a run collects. Unlike the order of writing, the dumps are
/// last.
int collectionOrderOf(const PartPlace& place) {
    constexpr int afterAllOthers = 1000;
    return writeOrderOf(place) + (place.isDump() ? afterAllOthers : 0);
}

/// Whether the size of a part counts for the limit of a collection.
bool isCollected(const Part& part, const PartPlace& place) {
    return place.known != nullptr && part.state != State::stale && part.state != State::missing;
}

std::optional<int> findLimit(const Package& package) {
    std::uint64_t total = 0;
    int last = -1;
    for (const Part& part : package.parts) {
        const PartPlace place = placeOf(part.name);
        if (isCollected(part, place) && part.textSize > 0) {
            total += part.textSize;
            last = std::max(last, collectionOrderOf(place));
        }
    }
    return total == collectionSize ? std::optional(last) : std::nullopt;
}

}  // namespace

Clues::Clues(const Package& judged)
    : package(judged),
      run(reportOf(judged)),
      disk(judged),
      replies(judged),
      processSigns(judged),
      ages(judged),
      listing(judged),
      listingIsCurrent(isOfThisRun(judged, listing)),
      began(beginOf(judged)),
      fullAt(findLimit(judged)) {
}

Presence Clues::presenceOf(std::string_view process) const {
    return listingIsCurrent ? listing.presenceOf(process) : Presence::unknown;
}

bool Clues::hasEnded(std::string_view process) const {
    const Presence presence = presenceOf(process);
    return presence == Presence::defunct ||
           (presence == Presence::absent && std::ranges::any_of(knownProcesses, [&](std::string_view other) {
                return presenceOf(other) == Presence::running;
            }));
}

bool Clues::precedesRun(const Part& part, const PartPlace& place) const {
    switch (place.collector) {
        case Collector::fuse:
        case Collector::mmi:
        case Collector::ti:
            return began && part.time && *part.time < *began;
        case Collector::linuxLogs:
            return began && newestOf(package, Collector::linuxLogs) < began;
        default:
            return false;
    }
}

bool Clues::isBeyondLimit(const Part& part, const PartPlace& place) const {
    return fullAt && isCollected(part, place) && collectionOrderOf(place) >= *fullAt;
}

bool Clues::answeredLater(const PartPlace& place) const {
    return std::ranges::any_of(package.parts, [&](const Part& part) {
        const PartPlace later = placeOf(part.name);
        return later.collector == Collector::mmi && later.dispatcher == place.dispatcher && part.size > 0 &&
               part.state != State::stale && later.known > place.known;
    });
}

bool Clues::timeoutsMatchEmptyReplies() const {
    if (!knowAllComplaints() || run->find(ComplaintKind::replyFailed) != nullptr ||
        run->find(ComplaintKind::sendFailed) != nullptr ||
        run->find(ComplaintKind::socketFailed) != nullptr ||
        run->find(ComplaintKind::replyUnended) != nullptr) {
        return false;
    }
    const auto empty = std::ranges::count_if(package.parts, [&](const Part& part) {
        return placeOf(part.name).collector == Collector::mmi && part.state == State::empty &&
               run->find(ComplaintKind::writeFailed, part.name) == nullptr;
    });
    return static_cast<std::size_t>(empty) == run->count(ComplaintKind::replyTimedOut);
}

const Complaint* Clues::noReplyEnded() const {
    if (!knowAllComplaints() || run->findNoRoom() != nullptr) {
        return nullptr;
    }
    const auto replyCount =
        static_cast<std::size_t>(std::ranges::count_if(package.parts, [](const Part& part) {
            const PartPlace place = placeOf(part.name);
            return place.collector == Collector::mmi && place.known != nullptr && !part.member.empty() &&
                   part.state != State::stale;
        }));
    const auto isAboutReply = [](const Complaint& complaint) {
        return complaint.kind == ComplaintKind::replyTimedOut ||
               complaint.kind == ComplaintKind::replyFailed || complaint.kind == ComplaintKind::replyUnended;
    };
    const auto& complaints = run->complaints();
    const auto first = std::ranges::find_if(complaints, isAboutReply);
    const auto count = static_cast<std::size_t>(std::ranges::count_if(complaints, isAboutReply));
    return count > 0 && count >= replyCount ? &*first : nullptr;
}

std::optional<Time> newestOf(const Package& package, Collector collector) {
    std::optional<Time> newest;
    for (const Part& part : package.parts) {
        if (!part.member.empty() && placeOf(part.name).collector == collector) {
            newest = std::max(newest, part.time);
        }
    }
    return newest;
}

}  // namespace Report

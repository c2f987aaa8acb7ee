#include "Judge.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Clues.hpp"
#include "Content.hpp"
#include "Diagnosis.hpp"
#include "ExpectedParts.hpp"
#include "MemberName.hpp"
#include "PartCauses.hpp"
#include "PartTable.hpp"
#include "RunCauses.hpp"
#include "TimeText.hpp"

namespace Report {
namespace {

constexpr std::chrono::seconds staleAge{120};
constexpr std::array exitStatuses{0, 1, 1, 2, 2, 3};  // in the order of Verdict

bool isDamaged(const Package& package) {
    return package.end.integrity == Integrity::cut || package.end.integrity == Integrity::altered;
}

/// Whether a package inside is damaged, at any depth.
bool isDamagedInside(const Package& package) {
    return std::ranges::any_of(
        package.nested, [](const Package& nested) { return isDamaged(nested) || isDamagedInside(nested); });
}

bool isUnread(const Package& package) {
    return package.end.integrity == Integrity::notRead || !package.unread.empty() ||
           std::ranges::any_of(package.nested, isUnread);
}

/// Whether reading stopped before the end of the package, so that nobody knows what it holds.
bool isEndUnknown(const Package& package) {
    return package.end.integrity == Integrity::notRead ||
           std::ranges::any_of(package.unread, [](const Unread& unread) { return unread.member.empty(); });
}

/// Whether a member whose name was not read to its end can be this part.
bool mayHaveCutName(const Package& package, std::string_view part) {
    return std::ranges::any_of(package.unread, [part](const Unread& unread) {
        const std::string beginning = normalName(unread.member);
        return unread.limit == Limit::name && (part.starts_with(beginning) || beginning.starts_with(part));
    });
}

/// Marks the parts that a limit left out, at least partly: nobody knows whether the rest is as it should be.
void markUnreadParts(Package& package) {
    std::set<std::string_view> unread;
    for (const Unread& row : package.unread) {
        unread.insert(row.member);
    }
    for (Part& part : package.parts) {
        if (part.state == State::present && unread.contains(part.member)) {
            part.state = State::notRead;
        }
    }
}

/// Marks the expected parts, and adds those that are not there. Returns the names of assumed ones.
std::set<std::string> addExpectedParts(Package& package, const Expectation& expectation) {
    std::multimap<std::string, std::size_t, std::less<>> present;
    for (std::size_t index = 0; index < package.parts.size(); ++index) {
        Part& part = package.parts[index];
        part.expected = countsIfThere(part, placeOf(part.name));
        present.emplace(part.name, index);
    }
    std::set<std::string> assumed;
    const bool endUnknown = isEndUnknown(package);
    for (const ExpectedPart& expected : expectedParts(package, expectation)) {
        const auto [begin, end] = present.equal_range(expected.name);
        for (auto entry = begin; entry != end; ++entry) {
            package.parts[entry->second].expected = true;
        }
        if (begin == end) {
            Part& part = package.parts.emplace_back();
            part.name = expected.name;
            part.expected = true;
            part.state = endUnknown || mayHaveCutName(package, part.name) ? State::notRead : State::missing;
            if (expected.assumed) {
                assumed.insert(expected.name);
            }
        }
    }
    return assumed;
}

bool hasAge(const PartPlace& place) {
    return place.collector != Collector::archive && place.collector != Collector::postMortem &&
           place.collector != Collector::unknown;
}

void markStaleParts(Package& package) {
    std::map<Collector, Time> newest;
    for (const Part& part : package.parts) {
        if (part.time) {
            Time& time = newest.emplace(placeOf(part.name).collector, *part.time).first->second;
            time = std::max(time, *part.time);
        }
    }
    for (Part& part : package.parts) {
        const PartPlace place = placeOf(part.name);
        if (part.state == State::present && part.time && hasAge(place) &&
            newest.at(place.collector) - *part.time > staleAge) {
            part.state = State::stale;
        }
    }
}

void markByContent(Package& package) {
    for (Part& part : package.parts) {
        if (part.state == State::present) {
            part.state = stateOfContent(part, placeOf(part.name));
        }
    }
}

State stateOfReply(ReplyFault fault) {
    return fault == ReplyFault::late ? State::stale : State::cut;
}

/// Whether an empty or cut log was full when korvel read it, but there was no room to write it.
bool isLostLog(const Clues& clues, const Subject& subject) {
    return !clues.knowAllComplaints() && (clues.disk.explains(subject.part, subject.place) ||
                                          clues.disk.mayExplain(subject.part, subject.place));
}

/// A dump of a process that had ended, older than the run.
bool isOfEndedProcess(const Clues& clues, const Subject& subject) {
    return subject.place.isDump() && clues.hasEnded(subject.place.leaf) && clues.ages.signOf(subject.part) &&
           !clues.followsBeginOfRun(subject.part);
}

/// The states that only the other parts or the sidecar show.
void markByClues(Package& package, const Clues& clues) {
    std::vector<std::pair<Part*, State>> changes;
    for (Part& part : package.parts) {
        if (part.state != State::present) {
            continue;
        }
        const Subject subject{part, placeOf(part.name)};
        const ReplyFault fault = clues.replies.faultOf(subject.place);
        const bool lost = clues.isBeyondLimit(part, subject.place) ||
                          (subject.place.isSharedLog() && isLostLog(clues, subject));
        if (const auto state = stateByRun(clues, subject)) {
            changes.emplace_back(&part, *state);
        } else if (fault != ReplyFault::none) {
            changes.emplace_back(&part, stateOfReply(fault));
        } else if (subject.place.collector == Collector::mmi && clues.noReplyEnded() != nullptr) {
            changes.emplace_back(&part, State::cut);
        } else if (isOfEndedProcess(clues, subject)) {
            changes.emplace_back(&part, State::stale);
        } else if (lost) {
            changes.emplace_back(&part, part.size == 0 ? State::empty : State::cut);
        }
    }
    for (const auto& [part, state] : changes) {
        part->state = state;
    }
}

void explainStates(Package& package, const Clues& clues, const std::set<std::string>& assumed) {
    for (Part& part : package.parts) {
        if (part.state == State::present) {
            continue;
        }
        const PartPlace place = placeOf(part.name);
        Diagnosis diagnosis = diagnose(clues, {part, place});
        part.cause = textOf(diagnosis.cause, place, diagnosis.detail);
        part.certainty = assumed.contains(part.name) ? Certainty::unknown : diagnosis.certainty;
        part.evidence = std::move(diagnosis.evidence);
    }
}

/// Signs that a part is old, although its state is present.
std::vector<Evidence> doubtsAbout(const Clues& clues, const Subject& subject) {
    std::vector<Evidence> doubts;
    if (clues.followsBeginOfRun(subject.part)) {
        return doubts;
    }
    if (const auto sign = clues.ages.signOf(subject.part); sign && sign->isClear) {
        doubts.push_back({subject.part.name, "written at " + secondsText(*subject.part.time) + ", but " +
                                                 sign->other->name + " at " +
                                                 secondsText(*sign->other->time)});
    }
    if (subject.place.isDump() && clues.hasEnded(subject.place.leaf)) {
        doubts.push_back(clues.listingFor(subject.place.leaf));
    }
    return doubts;
}

void noteDoubts(Package& package, const Clues& clues) {
    for (Part& part : package.parts) {
        if (part.state == State::present) {
            part.evidence = doubtsAbout(clues, {part, placeOf(part.name)});
        }
    }
}

void explainPackage(Package& package, const Clues& clues) {
    if (isDamaged(package)) {
        Diagnosis diagnosis = diagnosePackage(clues);
        package.cause = textOf(diagnosis.cause, {}, diagnosis.detail);
        package.certainty = diagnosis.certainty;
        package.evidence = std::move(diagnosis.evidence);
    }
}

Verdict verdictOf(const Package& package) {
    if (isDamaged(package)) {
        return package.end.integrity == Integrity::cut ? Verdict::cut : Verdict::altered;
    }
    if (isUnread(package)) {
        return Verdict::notFullyRead;
    }
    const bool incomplete =
        std::ranges::any_of(package.parts,
                            [](const Part& part) { return part.expected && part.state != State::present; }) ||
        isDamagedInside(package);
    return incomplete ? Verdict::incomplete : Verdict::whole;
}

}  // namespace

void judge(Package& package, const Expectation& expectation) {
    for (Package& nested : package.nested) {
        judge(nested, {});
    }
    markUnreadParts(package);
    const std::set<std::string> assumed = addExpectedParts(package, expectation);
    markStaleParts(package);
    markByContent(package);
    const Clues clues(package);
    markByClues(package, clues);
    explainStates(package, clues, assumed);
    noteDoubts(package, clues);
    explainPackage(package, clues);
    package.verdict = verdictOf(package);
}

int exitStatusOf(Verdict verdict) {
    return exitStatuses.at(static_cast<std::size_t>(verdict));
}

}  // namespace Report

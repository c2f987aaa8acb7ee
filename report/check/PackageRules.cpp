#include "PackageRules.hpp"

#include <algorithm>
#include <array>
#include <chrono>
#include <functional>
#include <initializer_list>
#include <optional>
#include <set>
#include <string>
#include <string_view>

#include "Clues.hpp"
#include "Content.hpp"
#include "ExpectedParts.hpp"
#include "Names.hpp"
#include "PartTable.hpp"
#include "RunReport.hpp"
#include "TimeText.hpp"

namespace Report {
namespace {

/// Adds what was found in a part, or in the package if `part` is empty.
using AddFound = std::function<void(std::string_view part, std::string_view source, std::string_view text)>;

std::string textOf(const std::optional<LogEntry>& entry) {
    if (!entry) {
        return "an unknown entry";
    }
    return "\"" + (entry->time ? microsecondsText(*entry->time) + " " : "") +
           (entry->tag.empty() ? "" : entry->tag + ": ") + entry->text + "\"";
}

// What each fact is, in a part or in a package.

void findOverlaps(const Part& part, const AddFound& add) {
    for (const Overlap& overlap : part.overlaps) {
        add(part.name, part.name, "between " + textOf(overlap.before) + " and " + textOf(overlap.after));
    }
}

void findFullLog(const Part& part, const AddFound& add) {
    if (placeOf(part.name).isSharedLog() && isSharedLogFull(part)) {
        add(part.name, part.name, std::to_string(part.textSize) + " bytes");
    }
}

void findInvalidText(const Part& part, const AddFound& add) {
    if (part.invalidBytes > 0 && !part.package) {
        add(part.name, part.name,
            std::to_string(part.invalidBytes) + " of " + std::to_string(part.textSize) +
                " bytes are not UTF-8");
    }
}

constexpr std::array datedCollectors{Collector::fuse, Collector::mmi, Collector::ti, Collector::linuxLogs};

bool isPerhapsLeftOver(const Part& part) {
    return part.state == State::present && !part.evidence.empty();
}

/// The newest time of a part of fuse, mmi, ti and linux.
std::optional<Time> newestTime(const Package& package) {
    std::optional<Time> newest;
    for (const Collector collector : datedCollectors) {
        newest = std::max(newest, newestOf(package, collector));
    }
    return newest;
}

/// The collectors that have old parts only: the last run did not run them.
std::set<Collector> oldCollectorsOf(const Package& package) {
    constexpr std::chrono::seconds longestRun{120};
    const std::optional<Time> newest = newestTime(package);
    std::set<Collector> collectors(datedCollectors.begin(), datedCollectors.end());
    std::erase_if(collectors, [&](Collector collector) { return !newestOf(package, collector); });
    for (const Part& part : package.parts) {
        const Collector collector = placeOf(part.name).collector;
        if (collectors.contains(collector) && part.time && *newest - *part.time <= longestRun &&
            !isPerhapsLeftOver(part)) {
            collectors.erase(collector);
        }
    }
    return collectors;
}

void findOldCollectors(const Package& package, const AddFound& add) {
    for (const Collector collector : oldCollectorsOf(package)) {
        add({}, folderOf(collector),
            "written at " + secondsText(*newestOf(package, collector)) + ", the newest part at " +
                secondsText(*newestTime(package)));
    }
}

void findPerhapsLeftOver(const Package& package, const AddFound& add) {
    const std::set<Collector> old = oldCollectorsOf(package);
    for (const Part& part : package.parts) {
        if (isPerhapsLeftOver(part) && !old.contains(placeOf(part.name).collector)) {
            for (const Evidence& evidence : part.evidence) {
                add(part.name, evidence.source, evidence.text);
            }
        }
    }
}

void findUnsetClock(const Package& package, const AddFound& add) {
    if (package.clockUnset && package.time) {
        add({}, {}, "the time of the package is " + secondsText(*package.time));
    }
}

void findOddMembers(const Package& package, const AddFound& add) {
    for (const Oddity& oddity : package.oddities) {
        add({}, oddity.member, oddity.what);
    }
}

void findSidecar(const Package& package, SidecarState state, const AddFound& add) {
    if (package.sidecarState == state) {
        add({}, sidecarLines, package.sidecarError);
    }
}

void findAbsentSidecar(const Package& package, const AddFound& add) {
    findSidecar(package, SidecarState::absent, add);
}

void findForeignSidecar(const Package& package, const AddFound& add) {
    findSidecar(package, SidecarState::foreign, add);
}

void findUnreadableSidecar(const Package& package, const AddFound& add) {
    findSidecar(package, SidecarState::unreadable, add);
}

bool hasRun(const Package& package) {
    return package.sidecarState == SidecarState::used && package.sidecar.has_value();
}

void findUnknownZone(const Package& package, const AddFound& add) {
    if (hasRun(package) && !package.zone) {
        const std::string* const zone = package.sidecar->find("zone");
        add({}, sidecarLines, zone == nullptr ? "no zone" : "zone: " + *zone);
    }
}

void findUnknownComplaints(const Package& package, const AddFound& add) {
    if (hasRun(package)) {
        const RunReport run(*package.sidecar);
        for (const Complaint& complaint : run.complaints()) {
            if (complaint.kind == ComplaintKind::unknown) {
                add({}, sidecarLines, complaint.line);
            }
        }
    }
}

void findFailedRun(const Package& package, const AddFound& add) {
    const std::string* const status = hasRun(package) ? package.sidecar->find("status") : nullptr;
    if (status != nullptr && *status != "0") {
        add({}, sidecarLines, "status: " + *status);
    }
}

void findMissingErrors(const Package& package, const AddFound& add) {
    if (hasRun(package)) {
        const RunReport run(*package.sidecar);
        if (const Complaint* const missing = run.find(ComplaintKind::errorsMissing)) {
            add({}, sidecarLines, missing->line);
        }
    }
}

void findRemovedDumps(const Package& package, const AddFound& add) {
    if (hasRun(package) && !hasFolder(package, folderOf(Collector::ti))) {
        const RunReport run(*package.sidecar);
        if (run.printed()) {
            add({}, sidecarLines, "command: " + run.command());
        }
    }
}

struct FactFinder {
    Fact fact;
    void (*inPart)(const Part& part, const AddFound& add);
    void (*inPackage)(const Package& package, const AddFound& add);
    bool ofSidecar;
};

constexpr std::array factFinders{
    FactFinder{Fact::overlap, findOverlaps, nullptr, false},
    FactFinder{Fact::logFull, findFullLog, nullptr, false},
    FactFinder{Fact::notText, findInvalidText, nullptr, false},
    FactFinder{Fact::oldCollector, nullptr, findOldCollectors, false},
    FactFinder{Fact::perhapsLeftOver, nullptr, findPerhapsLeftOver, false},
    FactFinder{Fact::clockUnset, nullptr, findUnsetClock, false},
    FactFinder{Fact::oddMember, nullptr, findOddMembers, false},
    FactFinder{Fact::zoneUnknown, nullptr, findUnknownZone, true},
    FactFinder{Fact::sidecarAbsent, nullptr, findAbsentSidecar, true},
    FactFinder{Fact::sidecarForeign, nullptr, findForeignSidecar, true},
    FactFinder{Fact::sidecarUnreadable, nullptr, findUnreadableSidecar, true},
    FactFinder{Fact::unknownComplaint, nullptr, findUnknownComplaints, true},
    FactFinder{Fact::runFailed, nullptr, findFailedRun, true},
    FactFinder{Fact::errorsMissing, nullptr, findMissingErrors, true},
    FactFinder{Fact::dumpsRemoved, nullptr, findRemovedDumps, true},
};

void applyFact(const FactFinder& finder, const Package& package, std::size_t index, const PartPattern& where,
               FindingList& findings) {
    const auto add = [&](std::string_view part, std::string_view source, std::string_view text) {
        if (part.empty() || where.fits(part)) {
            findings.add(index, part, source, text);
        }
    };
    if (finder.inPackage != nullptr) {
        finder.inPackage(package, add);
        return;
    }
    for (const Part& part : package.parts) {
        finder.inPart(part, add);
    }
}

void applyVerdict(const Package& package, std::size_t index, FindingList& findings) {
    findings.add(index, {}, {}, package.end.reason);
    if (!package.cause.empty()) {
        findings.support({{}, package.cause});
    }
    for (const Evidence& evidence : package.evidence) {
        findings.support(evidence);
    }
    for (const Unread& unread : package.unread) {
        findings.support(
            {unread.member, "not read, because of the limit " + std::string(optionOf(unread.limit))});
    }
}

}  // namespace

PackageRules::PackageRules(const std::vector<Rule>& allRules) : rules(allRules) {
    for (std::size_t index = 0; index < rules.size(); ++index) {
        const Rule& rule = rules[index];
        if (!rule.states.empty() || !rule.verdicts.empty() || !rule.facts.empty()) {
            packageRules.push_back({index, PartPattern(rule.where),
                                    rule.cause
                                        ? std::optional(TextPattern(*rule.cause, TextPattern::Mode::anyCase))
                                        : std::nullopt});
        }
    }
}

void PackageRules::applyToPart(const PackageRule& packageRule, const Part& part,
                               FindingList& findings) const {
    const Rule& rule = rules[packageRule.index];
    const bool fits =
        (part.expected || part.state != State::missing) && std::ranges::count(rule.states, part.state) > 0 &&
        (!packageRule.cause || packageRule.cause->fits(part.cause)) && packageRule.where.fits(part.name);
    if (fits) {
        findings.add(packageRule.index, part.name, part.name,
                     std::string(nameOf(part.state)) + ": " + part.cause);
        for (const Evidence& evidence : part.evidence) {
            findings.support(evidence);
        }
    }
}

void PackageRules::apply(const Package& package, bool isNested, FindingList& findings) const {
    for (const PackageRule& packageRule : packageRules) {
        const Rule& rule = rules[packageRule.index];
        if (std::ranges::count(rule.verdicts, package.verdict) > 0) {
            applyVerdict(package, packageRule.index, findings);
        }
        for (const Part& part : package.parts) {
            applyToPart(packageRule, part, findings);
        }
        for (const FactFinder& finder : factFinders) {
            if (std::ranges::count(rule.facts, finder.fact) > 0 && !(isNested && finder.ofSidecar)) {
                applyFact(finder, package, packageRule.index, packageRule.where, findings);
            }
        }
    }
}

}  // namespace Report

#include "PartCauses.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "Content.hpp"
#include "ExpectedParts.hpp"
#include "ProcessSigns.hpp"
#include "RunCauses.hpp"

namespace Report {
namespace {

using Answer = std::optional<Diagnosis>;

bool isGone(Presence presence) {
    return presence == Presence::absent || presence == Presence::defunct;
}

/// The process that the part comes from, or an empty name.
std::string processFor(const PartPlace& place) {
    if (place.isDump()) {
        return std::string(place.leaf);
    }
    return place.dispatcher == Dispatcher::none ? std::string() : processOf(place.dispatcher);
}

/// A dispatcher's process may have another name on a board. It has this name if the other one's has.
bool isNameCertain(const Clues& clues, const PartPlace& place) {
    const Dispatcher other = place.dispatcher == Dispatcher::iwf ? Dispatcher::sfn : Dispatcher::iwf;
    return place.isDump() || clues.presenceOf(processOf(place.dispatcher)) == Presence::defunct ||
           clues.presenceOf(processOf(other)) == Presence::running;
}

// Causes that the package itself shows.

/// The limit that left out a part or some of it.
std::optional<Limit> limitOf(const Package& package, const Part& part) {
    if (part.end.limit) {
        return part.end.limit;
    }
    const auto unread = std::ranges::find(package.unread, part.member, &Unread::member);
    if (unread != package.unread.end()) {
        return unread->limit;
    }
    return package.end.limit ? package.end.limit : Limit::name;  // the part may have a name that was cut
}

Answer byReader(const Clues& clues, const Subject& subject) {
    if (subject.part.state != State::notRead) {
        return std::nullopt;
    }
    const std::optional<Limit> limit = limitOf(clues.package, subject.part);
    return Diagnosis{Cause::limitOfReader, Certainty::certain, std::string(limit ? optionOf(*limit) : "")};
}

Answer byEndOfPackage(const Clues& clues, const Subject& subject) {
    const Integrity integrity = clues.package.end.integrity;
    const bool missing = subject.part.state == State::missing;
    if (missing && integrity == Integrity::cut) {
        return Diagnosis{Cause::packageEndsBefore};
    }
    if (missing && integrity == Integrity::altered) {
        return Diagnosis{Cause::packageDamaged, Certainty::unknown};
    }
    const auto& parts = clues.package.parts;
    const auto last =
        std::find_if(parts.rbegin(), parts.rend(), [](const Part& part) { return !part.member.empty(); });
    if (integrity == Integrity::cut && subject.part.state == State::cut && last != parts.rend() &&
        &*last == &subject.part) {
        return Diagnosis{Cause::packageEndsInside, Certainty::certain};
    }
    return std::nullopt;
}

Answer byOddity(const Clues& clues, const Subject& subject) {
    for (const Oddity& oddity : clues.package.oddities) {
        const std::string_view member = oddity.member;
        const bool same = member == "./" + subject.part.name + ".log" || member == "./" + subject.part.name;
        if (same && subject.part.state == State::missing) {
            return Diagnosis{Cause::notFollowed, Certainty::certain, oddity.what};
        }
    }
    return std::nullopt;
}

Answer byDamage(const Clues& /*clues*/, const Subject& subject) {
    const bool package = subject.part.package && subject.place.collector != Collector::postMortem;
    if (subject.part.state != State::unreadable && !package) {
        return std::nullopt;
    }
    if (subject.part.end.integrity != Integrity::whole) {
        return Diagnosis{Cause::damaged, Certainty::likely, subject.part.end.reason};
    }
    return Diagnosis{Cause::notText};
}

Answer byLimitOfCollection(const Clues& clues, const Subject& subject) {
    const State state = subject.part.state;
    if (state == State::cut && subject.place.known != nullptr && subject.part.textSize >= sourceSizeLimit) {
        return Diagnosis{subject.place.collector == Collector::mmi ? Cause::replyNotEnded
                                                                   : Cause::sourceLimit};
    }
    if ((state == State::cut || state == State::empty) && clues.isBeyondLimit(subject.part, subject.place)) {
        return Diagnosis{Cause::collectionLimit};
    }
    return std::nullopt;
}

/// A process writes its dump to /tmp itself. If korvel had no room there, the process had none either.
Answer byRoomForDump(const Clues& clues, const Subject& subject) {
    const Complaint* const full = subject.place.isDump() ? clues.run->findNoRoom() : nullptr;
    return full == nullptr
               ? std::nullopt
               : Answer(Diagnosis{Cause::noRoom, Certainty::likely, {}, {{"sidecar", full->line}}});
}

Answer byDisk(const Clues& clues, const Subject& subject) {
    const State state = subject.part.state;
    if (state != State::cut && state != State::empty) {
        return std::nullopt;
    }
    if (clues.knowAllComplaints() && subject.place.known != nullptr) {
        return byRoomForDump(clues, subject);  // korvel complains of each other file that it cannot write
    }
    if (clues.disk.explains(subject.part, subject.place)) {
        return Diagnosis{Cause::noRoom, Certainty::likely, {}, clues.disk.evidence()};
    }
    if (clues.disk.mayExplain(subject.part, subject.place)) {
        return Diagnosis{subject.place.isSharedLog() ? Cause::nothingLoggedOrNoRoom
                                                     : Cause::noAnswerOrNoRoom};
    }
    return std::nullopt;
}

/// A part that ends at a page although later ones were written.
Answer byPage(const Clues& /*clues*/, const Subject& subject) {
    if (subject.part.state == State::cut && endsAtPage(subject.part)) {
        return Diagnosis{Cause::noRoom};
    }
    return std::nullopt;
}

// Causes by collector: those that remain.

Diagnosis notRunning(const Clues& clues, const Subject& subject, Cause cause, bool certain) {
    const std::string process = processFor(subject.place);
    const bool sure = certain && isNameCertain(clues, subject.place);
    return {cause, sure ? Certainty::certain : Certainty::likely, {}, {clues.listingFor(process)}};
}

/// The line of the listing that shows that the process runs.
std::vector<Evidence> listingIfRunning(const Clues& clues, const Subject& subject) {
    const std::string process = processFor(subject.place);
    return clues.presenceOf(process) == Presence::running ? std::vector{clues.listingFor(process)}
                                                          : std::vector<Evidence>();
}

Answer byMmi(const Clues& clues, const Subject& subject) {
    if (subject.place.collector != Collector::mmi || subject.place.known == nullptr) {
        return std::nullopt;
    }
    const Presence presence = clues.presenceOf(processFor(subject.place));
    switch (subject.part.state) {
        case State::empty:
            if (isGone(presence) && !clues.answeredLater(subject.place)) {
                return notRunning(clues, subject, Cause::noAnswerNotRunning, true);
            }
            return Diagnosis{clues.knowAllComplaints() ? Cause::answeredNothing : Cause::noAnswer,
                             Certainty::likely,
                             {},
                             listingIfRunning(clues, subject)};
        case State::missing:
            return Diagnosis{Cause::notAsked};
        case State::cut:
            return Diagnosis{clues.replies.faultOf(subject.place) == ReplyFault::shorter
                                 ? Cause::replyStopped
                                 : Cause::replyNotEnded};
        case State::stale:
            return clues.replies.faultOf(subject.place) == ReplyFault::late ? Diagnosis{Cause::replyLate}
                                                                            : Diagnosis{Cause::leftOver};
        default:
            return std::nullopt;
    }
}

/// Whether the run asked for the parts of this keyword: then each dispatcher has files in mmi, even if empty.
bool isKeywordCollected(const Clues& clues, const PartPlace& place) {
    return std::ranges::any_of(clues.package.parts, [&](const Part& part) {
        const PartPlace other = placeOf(part.name);
        return other.known != nullptr && other.known->keyword == place.known->keyword &&
               other.dispatcher == place.dispatcher && other.collector == Collector::mmi &&
               !part.member.empty() && part.state != State::stale;
    });
}

Answer byStateFile(const Clues& clues, const Subject& subject) {
    if (subject.place.collector != Collector::fuse || subject.place.dispatcher == Dispatcher::none ||
        subject.place.known == nullptr) {
        return std::nullopt;
    }
    const bool stale = subject.part.state == State::stale;
    if (isGone(clues.presenceOf(processFor(subject.place)))) {
        const Cause cause = stale ? Cause::leftOverDispatcherNotRunning : Cause::dispatcherNotRunning;
        return notRunning(clues, subject, cause, !stale && isKeywordCollected(clues, subject.place));
    }
    if (stale) {
        return Diagnosis{Cause::leftOver};
    }
    return Diagnosis{subject.place.known->scope == Scope::iwfAlone ? Cause::bridgeFileMissing
                                                                   : Cause::stateFileMissing};
}

bool areAllDumpsMissing(const Clues& clues) {
    return std::ranges::none_of(clues.package.parts, [](const Part& part) {
        return placeOf(part.name).isDump() && !part.member.empty();
    });
}

Diagnosis missingDump(const Clues& clues, const Subject& subject, Presence presence) {
    if (!hasFolder(clues.package, folderOf(Collector::ti))) {
        return {Cause::notAskedOrPrinted};
    }
    if (isGone(presence)) {
        const bool asked = clues.run && clues.run->askedFor(subject.place) == true;
        return notRunning(clues, subject, Cause::processNotRunning, asked);
    }
    if (presence == Presence::running) {
        return {areAllDumpsMissing(clues) ? Cause::notAskedOrPrinted : Cause::dumpNotWritten,
                Certainty::likely,
                {},
                listingIfRunning(clues, subject)};
    }
    return {Cause::dumpMissing};
}

Answer byDump(const Clues& clues, const Subject& subject) {
    if (!subject.place.isDump()) {
        return std::nullopt;
    }
    const Presence presence = clues.presenceOf(subject.place.leaf);
    switch (subject.part.state) {
        case State::missing:
            return missingDump(clues, subject, presence);
        case State::empty:
            if (subject.part.size > 0) {
                return Diagnosis{Cause::dumpBlank, Certainty::certain};
            }
            return isGone(presence) ? notRunning(clues, subject, Cause::processNotRunning, false)
                   : presence == Presence::running ? Diagnosis{Cause::dumpNotFinished}
                                                   : Diagnosis{Cause::dumpMissing};
        case State::cut:
            return isGone(presence) ? notRunning(clues, subject, Cause::dumpInterrupted, false)
                                    : Diagnosis{Cause::dumpNotFinished};
        case State::stale:
            return isGone(presence) ? notRunning(clues, subject, Cause::leftOverNotRunning, false)
                   : presence == Presence::running ? Diagnosis{Cause::leftOverNoDump,
                                                               Certainty::likely,
                                                               {},
                                                               {clues.listingFor(subject.place.leaf)}}
                                                   : Diagnosis{Cause::leftOver};
        default:
            return std::nullopt;
    }
}

Answer bySharedLog(const Clues& clues, const Subject& subject) {
    if (!subject.place.isSharedLog() || subject.part.state != State::missing) {
        return std::nullopt;
    }
    const bool print =
        subject.place.collector == Collector::ti || !hasFolder(clues.package, folderOf(Collector::fuse));
    return Diagnosis{print ? Cause::notAskedOrPrinted : Cause::logMissing};
}

Answer byArchive(const Clues& /*clues*/, const Subject& subject) {
    if (subject.place.collector == Collector::archive) {
        return Diagnosis{subject.part.name.ends_with("/runtime") ? Cause::noRoom : Cause::pieceInterrupted};
    }
    return std::nullopt;
}

Answer byOthers(const Clues& /*clues*/, const Subject& subject) {
    if (subject.place.collector == Collector::postMortem) {
        return Diagnosis{subject.part.state == State::stale ? Cause::leftOver : Cause::copyIncomplete};
    }
    const bool missing = subject.part.state == State::missing;
    return missing ? Diagnosis{Cause::linuxMissing} : Diagnosis{Cause::noRoom};
}

Answer byRun(const Clues& clues, const Subject& subject) {
    return causeByRun(clues, subject);
}

Answer byAge(const Clues& /*clues*/, const Subject& subject) {
    return subject.part.state == State::stale ? Answer(Diagnosis{Cause::leftOver}) : std::nullopt;
}

/// In this order, the first one that knows a cause decides.
constexpr std::array explanations{
    byReader,  byEndOfPackage, byOddity, byRun,       byDamage, byLimitOfCollection,
    byDisk,    byPage,         byMmi,    byStateFile, byDump,   bySharedLog,
    byArchive, byAge,          byOthers};

}  // namespace

Diagnosis diagnose(const Clues& clues, const Subject& subject) {
    Diagnosis diagnosis{Cause::damaged, Certainty::unknown};
    for (const auto explain : explanations) {
        if (Answer found = explain(clues, subject)) {
            diagnosis = std::move(*found);
            break;
        }
    }
    if (subject.part.state == State::stale && clues.precedesRun(subject.part, subject.place)) {
        diagnosis.evidence.push_back({"sidecar", "began: " + *clues.package.sidecar->find("began")});
    }
    const std::string process = processFor(subject.place);
    if (!process.empty() && subject.part.state != State::notRead) {
        for (Evidence& line : clues.processSigns.evidenceFor(process)) {
            diagnosis.evidence.push_back(std::move(line));
        }
    }
    return diagnosis;
}

Diagnosis diagnosePackage(const Clues& clues) {
    if (clues.package.end.integrity == Integrity::altered) {
        return {Cause::changedLater};
    }
    const Complaint* failed = nullptr;
    if (clues.run) {
        for (const Complaint& complaint : clues.run->complaints()) {
            const bool packing = complaint.kind == ComplaintKind::commandFailed &&
                                 complaint.subject.find("/bin/tar ") != std::string::npos;
            failed = packing ? &complaint : failed;
        }
    }
    if (failed == nullptr) {
        return {Cause::packingInterrupted};
    }
    return {Cause::packingFailed, Certainty::certain, {}, {{"sidecar", failed->line}}};
}

}  // namespace Report

#include "RunCauses.hpp"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "Content.hpp"
#include "ProcessSigns.hpp"

namespace Report {
namespace {

using Message = ComplaintKind;

constexpr std::string_view workDirectory = "/tmp/korvel/";
constexpr std::string_view timedOut = "Connection timed out";
constexpr std::string_view linuxCommand = "fp_linux_log_collect ";
constexpr std::string_view listCommand = "ps ";
constexpr std::string_view copyCommand = "cp ";

std::vector<Evidence> evidenceOf(const Complaint& complaint) {
    return {{"sidecar", complaint.line}};
}

Diagnosis fact(Cause cause, const Complaint& complaint) {
    return {cause, Certainty::certain, complaint.detail, evidenceOf(complaint)};
}

bool isDestination(const Complaint& complaint) {
    return complaint.subject.starts_with(workDirectory);
}

const Complaint* findCommand(const RunReport& run, std::string_view start) {
    const auto& all = run.complaints();
    const auto found = std::ranges::find_if(all, [&](const Complaint& complaint) {
        return complaint.kind == Message::commandFailed && complaint.subject.starts_with(start);
    });
    return found == all.end() ? nullptr : &*found;
}

/// korvel could not write the file of the part.
std::optional<Diagnosis> byWriting(const RunReport& run, const Subject& subject) {
    if (const Complaint* const failed = run.find(Message::writeFailed, subject.part.name)) {
        return fact(RunReport::isNoRoom(*failed) ? Cause::noRoom : Cause::notWritten, *failed);
    }
    if (const Complaint* const failed = run.find(Message::openFailed, subject.part.name);
        failed != nullptr && isDestination(*failed)) {
        const bool printed = run.printed() && subject.place.collector == Collector::ti;
        return fact(subject.part.state == State::stale ? Cause::leftOverNotWritten
                    : printed                          ? Cause::removedByPrint
                                                       : Cause::folderNotCreated,
                    *failed);
    }
    if (const Complaint* const failed = run.find(Message::folderFailed);
        failed != nullptr && subject.place.collector == Collector::mmi &&
        subject.part.state == State::missing &&
        failed->subject.find(nameOf(subject.place.dispatcher)) != std::string::npos) {
        return fact(Cause::folderNotCreated, *failed);
    }
    return std::nullopt;
}

/// korvel could not read the source of the part, or only a part of it.
std::optional<Diagnosis> byReading(const RunReport& run, const Subject& subject) {
    const bool stale = subject.part.state == State::stale;
    if (const Complaint* const failed = run.find(Message::readFailed, subject.part.name)) {
        const bool hangs = failed->detail == timedOut && subject.place.dispatcher != Dispatcher::none;
        return fact(hangs ? Cause::sourceHangs : Cause::sourceUnreadable, *failed);
    }
    if (const Complaint* const cut = run.find(Message::cutAtLimit, subject.part.name)) {
        const bool full =
            run.find(Message::limitReached) != nullptr && subject.part.textSize < sourceSizeLimit;
        return fact(full ? Cause::collectionLimit : Cause::sourceLimit, *cut);
    }
    if (const Complaint* const failed = run.find(Message::openFailed, subject.part.name)) {
        return fact(stale ? Cause::leftOverNoSource : Cause::stateFileMissing, *failed);
    }
    if (const Complaint* const empty = run.find(Message::outputEmpty, subject.part.name)) {
        const Cause missing = subject.place.isSharedLog() ? Cause::logMissing : Cause::stateFileEmpty;
        return fact(stale ? Cause::leftOverNoSource : missing, *empty);
    }
    return std::nullopt;
}

/// The command of the run did not ask for the part, or removed it.
std::optional<Diagnosis> byCommand(const RunReport& run, const Subject& subject) {
    const std::vector<Evidence> evidence{{"sidecar", "command: " + run.command()}};
    const bool stale = subject.part.state == State::stale;
    const std::optional<bool> asked = run.askedFor(subject.place);
    if (asked == false && (stale || subject.part.state == State::missing)) {
        return Diagnosis{stale ? Cause::leftOverNotAsked : Cause::notAsked, Certainty::certain, {}, evidence};
    }
    if (asked == true && run.printed() && subject.place.collector == Collector::ti &&
        subject.part.state == State::missing) {
        return Diagnosis{Cause::removedByPrint, Certainty::likely, {}, evidence};
    }
    return std::nullopt;
}

/// The dispatcher's replies.
std::optional<Diagnosis> byReply(const Clues& clues, const Subject& subject) {
    const RunReport& run = *clues.run;
    if (subject.place.collector != Collector::mmi) {
        return std::nullopt;
    }
    for (const Complaint& complaint : run.complaints()) {
        const bool sameCommand = complaint.subject == subject.place.leaf;
        if (complaint.kind == Message::replyUnended && sameCommand && subject.part.state == State::cut) {
            return fact(Cause::replyNotEnded, complaint);
        }
        if (complaint.kind == Message::sendFailed && sameCommand && subject.part.size == 0) {
            return Diagnosis{Cause::notAskable, Certainty::likely, complaint.detail, evidenceOf(complaint)};
        }
        if (complaint.kind == Message::socketFailed && subject.part.size == 0) {
            return Diagnosis{Cause::notAskable, Certainty::likely, complaint.subject, evidenceOf(complaint)};
        }
    }
    if (const Complaint* const unended = clues.noReplyEnded();
        unended != nullptr && subject.part.state == State::cut) {
        return Diagnosis{Cause::replyNotEnded, Certainty::certain, {}, evidenceOf(*unended)};
    }
    const Complaint* const timeout = run.find(Message::replyTimedOut);
    const bool silent = subject.part.state == State::empty && timeout != nullptr;
    if (silent && clues.presenceOf(processOf(subject.place.dispatcher)) != Presence::absent) {
        Diagnosis diagnosis = fact(Cause::noAnswer, *timeout);
        diagnosis.certainty = clues.timeoutsMatchEmptyReplies() ? Certainty::certain : Certainty::likely;
        return diagnosis;
    }
    return std::nullopt;
}

/// The commands and signals of the run.
std::optional<Diagnosis> byCommandFailure(const RunReport& run, const Subject& subject) {
    if (subject.place.isDump() && subject.part.state != State::cut) {
        if (const Complaint* const failed = findCommand(run, listCommand)) {
            const bool stale = subject.part.state == State::stale;
            const Cause absent = stale ? Cause::leftOverNotRunning : Cause::processNotRunning;
            return fact(failed->detail == "1" ? absent : Cause::processesNotListed, *failed);
        }
        if (const Complaint* const failed = run.find(Message::signalFailed, subject.part.name)) {
            return fact(Cause::notSignalled, *failed);
        }
    }
    if (subject.part.name == folderOf(Collector::linuxLogs)) {
        if (const Complaint* const failed = findCommand(run, linuxCommand)) {
            return Diagnosis{Cause::linuxFailed, Certainty::certain, "exit code " + failed->detail,
                             evidenceOf(*failed)};
        }
    }
    if (subject.place.collector == Collector::postMortem) {
        if (const Complaint* const failed = findCommand(run, copyCommand)) {
            return Diagnosis{Cause::copyIncomplete, Certainty::likely, {}, evidenceOf(*failed)};
        }
    }
    return std::nullopt;
}

struct RunState {
    Message kind;
    State state;
};

// Complaints about a part that is in the package. If korvel wrote no new file, the one in the package is old.
constexpr std::array runStates{
    RunState{Message::writeFailed, State::cut},   RunState{Message::readFailed, State::cut},
    RunState{Message::cutAtLimit, State::cut},    RunState{Message::openFailed, State::stale},
    RunState{Message::outputEmpty, State::stale},
};

}  // namespace

std::optional<State> stateByRun(const Clues& clues, const Subject& subject) {
    if (clues.precedesRun(subject.part, subject.place)) {
        return State::stale;
    }
    if (!clues.run || subject.place.known == nullptr) {
        return std::nullopt;
    }
    if (clues.run->askedFor(subject.place) == false) {
        return State::stale;
    }
    for (const RunState& row : runStates) {
        if (clues.run->find(row.kind, subject.part.name) != nullptr) {
            return row.state == State::cut && subject.part.size == 0 ? State::empty : row.state;
        }
    }
    return std::nullopt;
}

std::optional<Diagnosis> causeByRun(const Clues& clues, const Subject& subject) {
    if (!clues.run) {
        return std::nullopt;
    }
    const RunReport& run = *clues.run;
    for (const auto by : {byWriting, byReading, byCommand, byCommandFailure}) {
        if (auto diagnosis = by(run, subject)) {
            return diagnosis;
        }
    }
    return byReply(clues, subject);
}

}  // namespace Report

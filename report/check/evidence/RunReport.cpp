#include "RunReport.hpp"

#include <algorithm>
#include <array>
#include <sstream>

namespace Report {
namespace {

/// The form of a message: BEFORE subject BETWEEN detail AFTER. Without BETWEEN, there is no detail.
struct MessageForm {
    ComplaintKind kind;
    std::string_view before;
    std::string_view between;
    std::string_view after;
};

// A message has the first form that fits.
constexpr std::array messageForms{
    MessageForm{ComplaintKind::socketFailed, "Error while opening socket, errno: ", "", ""},
    MessageForm{ComplaintKind::socketFailed, "Error while binding socket, errno: ", "", ""},
    MessageForm{ComplaintKind::socketFailed, "setsockopt SO_REUSEADDR error: ", "", ""},
    MessageForm{ComplaintKind::socketFailed, "inet_pton error for address: ", "", ""},
    MessageForm{ComplaintKind::other, "Error while writing standard output: ", "", ""},
    MessageForm{ComplaintKind::other, "Error while setting the language of commands: ", "", ""},
    MessageForm{ComplaintKind::other, "Error while closing socket, errno: ", "", ""},
    MessageForm{ComplaintKind::writeFailed, "Error while writing ", ": ", ""},
    MessageForm{ComplaintKind::readFailed, "Error while reading ", ": ", ""},
    MessageForm{ComplaintKind::folderFailed, "Error while creating directory: ", "", ""},
    MessageForm{ComplaintKind::openFailed, "Error while opening ", "", ""},
    MessageForm{ComplaintKind::signalFailed, "Error while sending 'kill -", "' signal to ", ""},
    MessageForm{ComplaintKind::commandFailed, "Error while executing ", " command, errno: ", ""},
    MessageForm{ComplaintKind::outputEmpty, "Output of ", "", " is empty"},
    MessageForm{ComplaintKind::cutAtLimit, "", " is larger than ", " bytes, cut"},
    MessageForm{ComplaintKind::limitReached, "The collection holds ", "", " bytes, what follows is left out"},
    MessageForm{ComplaintKind::waited, "Another log collection is running, waiting for its end", "", ""},
    MessageForm{ComplaintKind::replyTimedOut, "poll(): Timed out while waiting for response", "", ""},
    MessageForm{ComplaintKind::replyFailed, "poll(): An error occured, errno: ", "", ""},
    MessageForm{ComplaintKind::replyFailed, "recv(): An error occured, errno: ", "", ""},
    MessageForm{ComplaintKind::replyFailed, "recv(): Peer has performed an orderly shutdown", "", ""},
    MessageForm{ComplaintKind::replyUnended, "Reply to ", "", " does not end, cut"},
    MessageForm{ComplaintKind::sendFailed, "Sending command ", " to MmiSvc failed, errno: ", ""},
    MessageForm{ComplaintKind::commandFailed, "Command: ", " exited with error, exit code: ", ""},
    MessageForm{ComplaintKind::commandFailed, "Command: ", " exited with error", ""},
    MessageForm{ComplaintKind::commandFailed, "Command: ", " was signalled: ", ""},
    MessageForm{ComplaintKind::other, "Syslib shared memory log not found", "", ""},
    MessageForm{ComplaintKind::gaveUp, "Error: ", "", ""},
    MessageForm{ComplaintKind::errorsMissing, "make-package: standard error was not kept", "", ""},
    MessageForm{ComplaintKind::errorsMissing, "make-package: the rest of standard error is missing", "", ""},
};

/// How the paths in messages become names of parts.
struct PathForm {
    std::string_view before;
    std::string_view replacement;
};

constexpr std::array pathForms{
    PathForm{"/tmp/korvel/", ""},
    PathForm{"/tmp/fuse/", "fuse/"},
    PathForm{"/tmp/", "ti/"},
    PathForm{"dispatcher_log_memory", "fuse/HistoryLog"},
    PathForm{"syslib_log_memory", "ti/syslib_sm_log"},
};

constexpr std::string_view logEnding = ".log";

std::string partNamedBy(std::string_view subject) {
    if (subject.ends_with(logEnding)) {
        subject.remove_suffix(logEnding.size());
    }
    for (const PathForm& form : pathForms) {
        if (subject.starts_with(form.before)) {
            const std::string name = std::string(form.replacement).append(subject.substr(form.before.size()));
            return placeOf(name).known != nullptr ? name : std::string();
        }
    }
    return {};
}

bool fits(const MessageForm& form, std::string_view line, Complaint& complaint) {
    if (line.size() < form.before.size() + form.after.size() || !line.starts_with(form.before) ||
        !line.ends_with(form.after)) {
        return false;
    }
    const std::string_view middle =
        line.substr(form.before.size(), line.size() - form.before.size() - form.after.size());
    const std::size_t between = form.between.empty() ? middle.size() : middle.find(form.between);
    if (between == std::string_view::npos) {
        return false;
    }
    complaint.kind = form.kind;
    complaint.subject = middle.substr(0, between);
    complaint.detail = middle.substr(std::min(middle.size(), between + form.between.size()));
    return true;
}

/// "Error while sending 'kill -10' signal to NAME [pid:N], errno: REASON": the subject is NAME.
void takeProcess(Complaint& complaint) {
    const std::size_t end = complaint.detail.find(" [pid:");
    const std::size_t reason = complaint.detail.find(", errno: ");
    complaint.subject = complaint.detail.substr(0, end);
    complaint.part = "ti/" + complaint.subject;
    complaint.detail = reason == std::string::npos ? std::string() : complaint.detail.substr(reason + 9);
}

Complaint parseComplaint(std::string_view line) {
    Complaint complaint;
    complaint.line = line;
    for (const MessageForm& form : messageForms) {
        if (fits(form, line, complaint)) {
            complaint.part = partNamedBy(complaint.subject);
            break;
        }
    }
    if (complaint.kind == ComplaintKind::signalFailed) {
        takeProcess(complaint);
    }
    return complaint;
}

constexpr std::array<std::string_view, 7> outputWords{"print",   "dump",   "pkg",      "pkg-trs",
                                                      "pkg-sup", "pkg-pm", "pkg-sdown"};

struct DeploymentWord {
    std::string_view word;
    Dispatcher dispatcher;
    bool both;
};

// The first word that is in the text decides, as fpdispatcher.conf(5) has it.
constexpr std::array deploymentWords{
    DeploymentWord{"is_ant", Dispatcher::sfn, false},  DeploymentWord{"is_master", Dispatcher::none, true},
    DeploymentWord{"_SfnAnt", Dispatcher::sfn, false}, DeploymentWord{"_SfnMaster", Dispatcher::none, true},
    DeploymentWord{"_type", Dispatcher::iwf, false},
};

}  // namespace

RunReport::RunReport(const Sidecar& sidecar) {
    if (const std::string* const command = sidecar.find("command")) {
        commandLine = *command;
    }
    parseCommand();
    parseComplaints(sidecar.standardError);
}

void RunReport::parseCommand() {
    std::istringstream words(commandLine);
    std::set<std::string, std::less<>> selected;
    bool collects = false;
    for (std::string word; words >> word;) {
        if (word == "-d" && words >> word) {
            dispatchers.insert(word);
            continue;
        }
        const auto narrow = narrowKeywordsOf(word);
        selected.insert(narrow.begin(), narrow.end());
        collects = collects || std::ranges::find(outputWords, word) != outputWords.end();
        alsoPrinted = alsoPrinted || word == "print";
    }
    if (collects && selected.empty()) {
        const auto everything = narrowKeywordsOf("all");
        selected.insert(everything.begin(), everything.end());
    }
    if (collects) {
        keywords = std::move(selected);
    }
}

void RunReport::parseComplaints(std::string_view text) {
    while (!text.empty()) {
        const std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (!line.empty()) {
            lines.push_back(parseComplaint(line));
        }
    }
}

const Complaint* RunReport::find(ComplaintKind kind) const {
    const auto found = std::ranges::find(lines, kind, &Complaint::kind);
    return found == lines.end() ? nullptr : &*found;
}

const Complaint* RunReport::find(ComplaintKind kind, std::string_view part) const {
    const auto found = std::ranges::find_if(
        lines, [&](const Complaint& complaint) { return complaint.kind == kind && complaint.part == part; });
    return found == lines.end() ? nullptr : &*found;
}

bool RunReport::isNoRoom(const Complaint& complaint) {
    return complaint.kind == ComplaintKind::writeFailed && complaint.detail == "No space left on device";
}

const Complaint* RunReport::findNoRoom() const {
    const auto found = std::ranges::find_if(lines, isNoRoom);
    return found == lines.end() ? nullptr : &*found;
}

std::size_t RunReport::count(ComplaintKind kind) const {
    return static_cast<std::size_t>(std::ranges::count(lines, kind, &Complaint::kind));
}

std::vector<Dispatcher> dispatchersOf(std::string_view deployment) {
    for (const DeploymentWord& row : deploymentWords) {
        if (deployment.find(row.word) != std::string_view::npos) {
            return row.both ? std::vector{Dispatcher::iwf, Dispatcher::sfn} : std::vector{row.dispatcher};
        }
    }
    return {};
}

std::optional<bool> RunReport::askedFor(const PartPlace& place) const {
    if (!keywords || place.known == nullptr) {
        return std::nullopt;
    }
    const bool dispatcherFits = place.dispatcher == Dispatcher::none || dispatchers.empty() ||
                                dispatchers.contains("all") || dispatchers.contains(nameOf(place.dispatcher));
    return dispatcherFits && keywords->contains(place.known->keyword);
}

}  // namespace Report

#include "ProcessSigns.hpp"

#include <algorithm>
#include <array>
#include <cctype>

#include "Content.hpp"

namespace Report {
namespace {

constexpr std::size_t maximumLines = 2;

struct Watched {
    std::string_view process;
    std::string_view heartbeat;  // before the status of this process in a line of supervision
};

constexpr std::array watchedProcesses{
    Watched{"iwf_dispatcher", "IWF Dispatcher:"},
    Watched{"sfn_dispatcher", "SFN Dispatcher:"},
    Watched{"netfp_proxy", "NetfpProxy: "},
    Watched{"netfp_server", ""},
    Watched{"netfp_master", ""},
    Watched{"resmgr_server", ""},
};

constexpr std::array<std::string_view, 11> endings{"killed",      "died",    "dead",      "segfault",
                                                   "core dumped", "aborted", "crash",     "not running",
                                                   "no response", "exited",  "terminated"};

bool isUnhealthy(std::string_view line, std::string_view heartbeat) {
    const std::size_t at = heartbeat.empty() ? std::string_view::npos : line.find(heartbeat);
    if (at == std::string_view::npos) {
        return false;
    }
    const std::string_view status = line.substr(at + heartbeat.size());
    return status.starts_with("NOT_RECEIVED") || status.starts_with("ERROR");
}

std::string lowerCase(std::string_view line) {
    std::string lower(line);
    std::ranges::transform(lower, lower.begin(), [](unsigned char character) {
        return static_cast<char>(std::tolower(character));
    });
    return lower;
}

bool namesAnEnd(std::string_view line) {
    const std::string lower = lowerCase(line);
    return std::ranges::any_of(endings,
                               [&](std::string_view word) { return lower.find(word) != std::string::npos; });
}

bool isAbout(std::string_view line, const Watched& watched) {
    return isUnhealthy(line, watched.heartbeat) ||
           (line.find(watched.process) != std::string_view::npos && namesAnEnd(line));
}

bool isLogOfProcesses(const PartPlace& place) {
    return place.isSharedLog() || isLinuxLog(place);
}

}  // namespace

std::string processOf(Dispatcher dispatcher) {
    return std::string(nameOf(dispatcher)) + "_dispatcher";
}

ProcessSigns::ProcessSigns(const Package& package) {
    for (const Part& part : package.parts) {
        if (isLogOfProcesses(placeOf(part.name))) {
            read(part);
        }
    }
}

void ProcessSigns::read(const Part& part) {
    const std::string text = evidenceTextOf(part);
    std::string_view rest = text;
    std::map<std::string_view, std::string_view> last;  // by process
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(rest.size(), line.size() + 1));
        for (const Watched& watched : watchedProcesses) {
            if (isAbout(line, watched)) {
                last[watched.process] = line;
            }
        }
    }
    for (const auto& [process, line] : last) {
        lines[std::string(process)].push_back({part.name, std::string(line)});
    }
}

std::vector<Evidence> ProcessSigns::evidenceFor(std::string_view process) const {
    const auto found = lines.find(process);
    if (found == lines.end()) {
        return {};
    }
    return {found->second.begin(), found->second.begin() + static_cast<std::ptrdiff_t>(
                                                               std::min(maximumLines, found->second.size()))};
}

}  // namespace Report

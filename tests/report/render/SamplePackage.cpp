#include "SamplePackage.hpp"

#include <algorithm>
#include <chrono>
#include <stdexcept>

namespace Report::Test {
namespace {

using namespace std::chrono_literals;

const Time made = std::chrono::sys_days{2026y / 11 / 22} + 2h + 46min + 41s;

const std::vector<std::string> expectedParts{
    "fuse/HistoryLog",
    "fuse/iwf/dispatcherCpu",
    "fuse/iwf/dmaStats",
    "fuse/iwf/tracing_on",
    "fuse/sfn/dispatcherCpu",
    "fuse/sfn/dmaStats",
    "fuse/sfn/tracing_on",
    "mmi/iwf/HeapStats",
    "mmi/iwf/ReassemblyCounters",
    "mmi/iwf/SocketSvcCounters",
    "mmi/iwf/SocketSvcInfo",
    "mmi/sfn/HeapStats",
    "mmi/sfn/ReassemblyCounters",
    "mmi/sfn/SocketSvcCounters",
    "mmi/sfn/SocketSvcInfo",
    "ti/netfp_master",
    "ti/netfp_proxy",
    "ti/netfp_server",
    "ti/resmgr_server",
    "ti/syslib_sm_log",
    "linux/cmdline",
    "linux/processes",
    "linux/uptime",
};

Sidecar sidecar() {
    Sidecar run;
    run.keys = {{"format", "1"}, {"board", "lab-17"}, {"korvel", "1.0.0"}, {"command", "korvel pkg-sup"},
                {"status", "0"}, {"zone", "UTC"}};
    return run;
}

Part presentPart(const std::string& name, bool expected) {
    Part part;
    part.name = name;
    part.member = "./" + name + ".log";
    part.expected = expected;
    return part;
}

}  // namespace

Part& partOf(Package& package, const std::string& name) {
    const auto found = std::find_if(package.parts.begin(), package.parts.end(),
                                    [&](const Part& part) { return part.name == name; });
    if (found == package.parts.end()) {
        throw std::logic_error("no part " + name);
    }
    return *found;
}

Package wholePackage() {
    Package package;
    package.source = "netfp_logs_sup.tgz";
    package.sha256 = "3f786850e387550fdab836ed7e6dc881de23001b3f786850e387550fdab836ed";
    package.size = 12'641;
    package.board = "lab-17";
    package.time = made;
    package.kind = Kind::sup;
    package.verdict = Verdict::whole;
    for (const std::string& name : expectedParts) {
        package.parts.push_back(presentPart(name, true));
    }
    package.parts.push_back(presentPart("archive/dispatcher/runtime", false));
    package.zone = "UTC";
    package.sidecarState = SidecarState::used;
    package.sidecar = sidecar();
    return package;
}

Package troubledPackage() {
    Package package = wholePackage();
    package.verdict = Verdict::incomplete;
    for (const char* const name : {"HeapStats", "ReassemblyCounters", "SocketSvcCounters", "SocketSvcInfo"}) {
        Part& silent = partOf(package, std::string("mmi/sfn/") + name);
        silent.state = State::empty;
        silent.cause = std::string("dispatcher sfn did not answer ") + name + ", it was not running";
        silent.certainty = Certainty::certain;
        silent.evidence = {{"linux/processes", "no line ends in sfn_dispatcher"},
                           {"sidecar", "MMI: no answer from 127.0.0.1:8777 within 500 ms"}};
    }
    Part& cut = partOf(package, "ti/netfp_proxy");
    cut.state = State::cut;
    cut.cause = "the process did not finish its dump within a second";
    cut.certainty = Certainty::likely;
    Part& missing = partOf(package, "ti/resmgr_server");
    missing.state = State::missing;
    missing.cause = "the process was not running, or a print in the same run removed the dump";
    missing.certainty = Certainty::unknown;
    return package;
}

void addValue(Package& package, const std::string& part, const std::string& title, const std::string& name,
              std::int64_t number) {
    package.values.push_back({part, title, name, 1, number, std::to_string(number)});
}

void setLog(Package& package, const std::string& part, const std::string& text) {
    Part& log = partOf(package, part);
    log.log = true;
    log.text.append(text);
}

}  // namespace Report::Test

#include "PackageFixture.hpp"

#include <algorithm>
#include <chrono>
#include <sstream>

#include "Judge.hpp"
#include "Names.hpp"

namespace Report::Testing {
namespace {

using std::chrono::seconds;

constexpr Time collected{seconds{1'790'000'000}};

const char* const stateFiles[] = {"dispatcherCpu", "dmaStats"};
const char* const commands[] = {"SocketSvcInfo", "SocketSvcCounters", "ReassemblyCounters", "HeapStats"};
const char* const processes[] = {"netfp_proxy", "netfp_server", "netfp_master", "resmgr_server"};

std::string listing() {
    std::string text = "USER         PID %CPU %MEM    VSZ   RSS TTY      STAT START   TIME COMMAND\n";
    int pid = 300;
    for (const char* const process : {"netfp_proxy", "netfp_server", "netfp_master", "resmgr_server",
                                      "iwf_dispatcher", "sfn_dispatcher", "korvel pkg-sup", "ps aux"}) {
        text += "root         " + std::to_string(++pid) +
                "  0.0  0.0   6648  4528 ?        S    06:03   0:00 " + process + "\n";
    }
    return text;
}

}  // namespace

std::string counters(const std::string& dispatcher, const std::string& title) {
    std::string text = dispatcher + ": " + title + "\n";
    for (const char* const name : {"received", "sent", "failed"}) {
        text += "  " + title + " " + name + "            " + std::to_string(text.size()) + "\n";
    }
    return text;
}

std::string dump(const std::string& process) {
    return "<" + process + "_dump>\n" + process + ":\n  sessions             17\n</" + process + "_dump>\n";
}

PackageFixture::PackageFixture() {
    package.source = "netfp_logs_sup.tgz";
    package.kind = Kind::sup;
    for (const std::string dispatcher : {"iwf", "sfn"}) {
        const std::string stateFolder = "fuse/" + dispatcher + '/';
        write(stateFolder + "tracing_on", "0\n");
        for (const std::string file : stateFiles) {
            write(stateFolder + file, counters(dispatcher, file));
        }
        const std::string replyFolder = "mmi/" + dispatcher + '/';
        for (const std::string command : commands) {
            write(replyFolder + command, counters(dispatcher, command));
        }
    }
    write("fuse/HistoryLog", "2026-09-21T14:13:19.000000Z 3 iwf_dispatcher: started\n");
    for (const std::string process : processes) {
        write("ti/" + process, dump(process));
    }
    write("ti/syslib_sm_log", "2026-09-21T14:13:19.000000Z 3 netfp_server: started\n");
    write("linux/processes", listing());
    write("linux/mounts", "tmpfs /tmp tmpfs rw,size=65536k 0 0\n");
    write("linux/system", "");
}

bool PackageFixture::has(const std::string& name) const {
    return std::ranges::find(package.parts, name, &Part::name) != package.parts.end();
}

Part& PackageFixture::part(const std::string& name) {
    const auto found = std::ranges::find(package.parts, name, &Part::name);
    if (found != package.parts.end()) {
        return *found;
    }
    for (std::size_t slash = name.find('/'); slash != std::string::npos; slash = name.find('/', slash + 1)) {
        package.folders.insert(name.substr(0, slash));
    }
    Part& part = package.parts.emplace_back();
    part.name = name;
    part.member = "./" + name + ".log";
    part.time = collected;
    return part;
}

void PackageFixture::write(const std::string& name, std::string_view text) {
    Part& written = part(name);
    written.text = {};
    written.text.append(text);
    written.size = written.textSize = text.size();
    written.tail = text.substr(text.size() - std::min<std::size_t>(text.size(), 256));
}

void PackageFixture::writeLarge(const std::string& name, std::uint64_t size, char last) {
    Part& written = part(name);
    written.text = {};
    written.size = written.textSize = size;
    written.tail = std::string(255, 'x') + last;
}

void PackageFixture::remove(const std::string& name) {
    std::erase_if(package.parts, [&](const Part& part) { return part.name == name; });
}

void PackageFixture::removeFolder(const std::string& folder) {
    const auto isInside = [&](const std::string& name) {
        return name == folder || name.starts_with(folder + "/");
    };
    std::erase_if(package.parts, [&](const Part& part) { return isInside(part.name); });
    std::erase_if(package.folders, isInside);
}

void PackageFixture::age(const std::string& name, int secondsOld) {
    part(name).time = collected - seconds{secondsOld};
}

void PackageFixture::kill(const std::string& process) {
    std::istringstream lines(part("linux/processes").text.head(10000));
    std::string kept;
    for (std::string line; std::getline(lines, line);) {
        kept += line.ends_with(process) ? "" : line + "\n";
    }
    write("linux/processes", kept);
}

void PackageFixture::ran(const std::string& command, const std::string& standardError) {
    package.sidecarState = SidecarState::used;
    package.sidecar = Sidecar{.keys = {{"command", command}}, .probes = {}, .standardError = standardError};
}

std::string PackageFixture::judged(std::string_view keywords) const {
    Package judgedPackage = package;
    judge(judgedPackage, keywords.empty() ? Expectation{} : parseExpectation(std::string(keywords)));
    std::string text;
    for (const Part& part : judgedPackage.parts) {
        if (part.expected && part.state != State::present) {
            text += part.name + ": " + std::string(nameOf(part.state)) + ", " +
                    std::string(nameOf(part.certainty.value_or(Certainty::unknown))) + ": " + part.cause +
                    "\n";
        }
    }
    return text + std::string(nameOf(judgedPackage.verdict)) + "\n";
}

}  // namespace Report::Testing

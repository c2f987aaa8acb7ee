#include "TiLogCollector.hpp"

#include <array>
#include <csignal>
#include <cstdio>
#include <sstream>
#include <utility>

#include <unistd.h>

#include "Console.hpp"
#include "ConsoleHeader.hpp"
#include "FileReader.hpp"
#include "InputFile.hpp"
#include "Number.hpp"
#include "OutputFile.hpp"
#include "Shell.hpp"
#include "SmLogReader.hpp"
#include "SmLogs.hpp"
#include "Wait.hpp"
#include "Words.hpp"

namespace Korvel {
namespace {

constexpr std::size_t expectedLogs = 10;
constexpr unsigned syslibLogSize = 2097152;
constexpr int dumpSignal = SIGUSR1;
constexpr int noPid = 0;
constexpr int lowestPid = 2;
constexpr unsigned pidColumn = 2;  // of the process listing, counted from 1

constexpr int dumpRounds = 20;
constexpr std::chrono::milliseconds dumpPause{50};
constexpr std::size_t longestHeadlessDump = 63;  // a dump up to here holds nothing, whatever its end
const std::string incompleteNote =
    "\n====> This log may be not complete, terminator pattern was not found <====\n";

struct SelectableProcess {
    TiLogCollector::Mode mode;
    const char* name;
};

/// In the order in which the selected ones are signalled, printed and dumped.
constexpr std::array selectableProcesses{
    SelectableProcess{TiLogCollector::netfpProxy, "netfp_proxy"},
    SelectableProcess{TiLogCollector::netfpServer, "netfp_server"},
    SelectableProcess{TiLogCollector::netfpMaster, "netfp_master"},
    SelectableProcess{TiLogCollector::resmgrServer, "resmgr_server"},
};

std::string joined(const std::vector<std::string>& words, const char* separator) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : separator) + word;
    }
    return text;
}

TiLogCollector::Pids parseListing(const std::string& listing, const std::vector<std::string>& names) {
    TiLogCollector::Pids pids;
    std::istringstream lines(listing);
    for (std::string line; std::getline(lines, line);) {
        const std::string column = getNthTokenFromString(line, pidColumn);
        for (const std::string& name : names) {
            if (line.find(name) != std::string::npos && !column.empty()) {
                int pid = noPid;
                static_cast<void>(parseNumber(column, pid));
                pids[name] = pid;
            }
        }
    }
    return pids;
}

bool isCompleteDump(const std::string& text, const std::string& name) {
    return text.size() > longestHeadlessDump && text.rfind("</" + name + "_dump>") != std::string::npos;
}

}  // namespace

const std::string TiLogCollector::id = "ti";
const std::vector<std::string> TiLogCollector::netfpProcesses = {"netfp_server", "netfp_proxy",
                                                                 "netfp_master", "resmgr_server"};
const std::string TiLogCollector::pidsFile = "pids.tmp";
const std::string TiLogCollector::tiLogsPath = "/var/log/";
const std::string TiLogCollector::syslibSmLogId = "syslib_sm_log";

TiLogCollector::TiLogCollector(const std::string& workspaceDir, unsigned mask)
    : LogCollector(workspaceDir + "/ti"),
      syslibLogEnabled(isModeEnabled(syslibLog, mask)),
      pids(getPids(netfpProcesses, workspaceDir + pidsFile)),
      logs(expectedLogs) {
    for (const SelectableProcess& process : selectableProcesses) {
        if (isModeEnabled(process.mode, mask)) {
            processes.emplace_back(process.name);
        }
    }
}

TiLogCollector::Pids TiLogCollector::getPids(const std::vector<std::string>& names,
                                             const std::string& pidFilePath) {
    // The shell would follow a link that someone else put at a path that anyone can guess.
    ::unlink(pidFilePath.c_str());
    if (!executeCommand("ps aux | grep -v -E \"grep|korvel\" | grep -E \"" + joined(names, "|") + "\" > " +
                        pidFilePath)) {
        return {};
    }
    const Pids found = parseListing(readFileToString(pidFilePath), names);
    executeCommand("rm -f " + pidFilePath);
    return found;
}

bool TiLogCollector::collectLogs(bool printRequested) {
    progress("Starting log collection from TI...");
    if (syslibLogEnabled) {
        logs[syslibSmLogId] = readSmLog(syslibLogName, syslibLogSize, 0);
    }
    for (const std::string& name : processes) {
        collectDump(name, printRequested);
    }
    return true;
}

void TiLogCollector::collectDump(const std::string& name, bool printRequested) {
    const std::string destination = collectorDir + "/" + name + ".log";
    const std::string source = "/tmp/" + name + ".log";
    if (!signalProcess(name)) {
        return;
    }
    progress("Dumping ", name, " to ", destination, "... ");
    const bool complete = awaitDump(name, source, destination);
    if (copyError != 0) {
        fail("Error while writing ", destination, ": ", std::strerror(copyError));
    }
    std::remove(source.c_str());
    if (!complete) {
        logs[name] += incompleteNote;
    }
    if (printRequested) {
        removeFileAndItsDir(destination);
    }
}

/// False where there is no process to signal. A signal that fails is reported; there may be a dump all the
/// same.
bool TiLogCollector::signalProcess(const std::string& name) {
    const pid_t pid = pids[name];
    progress("Sending 'kill -", dumpSignal, "' signal to ", name, " [pid:", pid, "]...");
    if (pid < lowestPid) {
        progress("Invalid pid for ", name, " [pid:", pid, "], process may not be running, skipping");
        return false;
    }
    if (::kill(pid, dumpSignal) != 0) {
        failErrno("Error while sending 'kill -", dumpSignal, "' signal to ", name, " [pid:", pid,
                  "], errno: ");
    }
    return true;
}

bool TiLogCollector::awaitDump(const std::string& name, const std::string& source,
                               const std::string& destination) {
    copyError = 0;
    for (int round = 0; round < dumpRounds; ++round) {
        const int earlierError = std::exchange(copyError, 0);
        if (copyDumpFileToWorkspace(source, destination)) {
            logs[name] = readFileFromLine(destination, 0);
        } else if (copyError != 0) {  // a full disk does not keep it from the console
            logs[name] = readWholeFile(source).value_or(logs[name]);
        } else {
            copyError = earlierError;  // the source is gone: nothing makes up for what went wrong
        }
        if (isCompleteDump(logs[name], name)) {
            return true;
        }
        nap(dumpPause);
    }
    return false;
}

bool TiLogCollector::copyDumpFileToWorkspace(const std::string& source, const std::string& destination) {
    InputFile input(source);
    if (!input.isOpen()) {
        return false;
    }
    OutputFile output(destination);
    if (!output.isOpen()) {
        return false;
    }
    std::array<char, 16384> piece{};
    std::optional<std::size_t> count = input.read(piece);
    while (count && *count > 0 && output.writeError() == 0) {
        output.write({piece.data(), *count});
        count = input.read(piece);
    }
    const bool written = output.close();
    copyError = output.writeError();
    return written;
}

void TiLogCollector::removeFileAndItsDir(const std::string& path) {
    executeCommand("rm -rf $(dirname \"" + path + "\")");
}

bool TiLogCollector::printOnConsole() {
    for (const std::string& name : processes) {
        printLogHeader(name);
        print(logs[name], '\n');
    }
    if (syslibLogEnabled) {
        if (reportMissingSyslibLog()) {
            return false;
        }
        printLogHeader("SYSLIB LOG");
        print(logs[syslibSmLogId]);
    }
    return std::cout.good();
}

bool TiLogCollector::dumpToFiles() {
    return !syslibLogEnabled ||
           (!reportMissingSyslibLog() &&
            writeDumpFile(collectorDir + "/" + syslibSmLogId + ".log", logs[syslibSmLogId]));
}

bool TiLogCollector::reportMissingSyslibLog() const {
    if (logs.contains(syslibSmLogId)) {
        return false;
    }
    fail("Syslib shared memory log not found");
    return true;
}

}  // namespace Korvel

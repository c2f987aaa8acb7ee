#include "TiLogCollector.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Console.hpp"
#include "ConsoleHeader.hpp"
#include "DumpCopy.hpp"
#include "FileAccess.hpp"
#include "OutputFile.hpp"
#include "ProcessListing.hpp"
#include "ProcessOwner.hpp"
#include "Shell.hpp"
#include "SmLogReader.hpp"
#include "SmLogs.hpp"
#include "SystemCall.hpp"
#include "Wait.hpp"

namespace Korvel {
namespace {

constexpr std::size_t expectedLogs = 10;
constexpr unsigned syslibLogSize = 2097152;
constexpr int dumpSignal = SIGUSR1;
constexpr int lowestPid = 2;
constexpr mode_t scratchFileMode = 0666;
constexpr std::array errorsForEveryone{EACCES, ENOENT, ENOTDIR, EROFS};  // no user can create the file
constexpr std::size_t listingSizeLimit = 16U << 20U;  // any user can start processes with long names

constexpr int maximumDumpChecks = 20;
constexpr std::chrono::milliseconds dumpCheckInterval{50};
constexpr std::size_t minimumCompleteDump = 64;  // bytes
const std::string incompleteNote =
    "\n====> This log may be not complete, terminator pattern was not found <====\n";

struct SelectableProcess {
    TiLogCollector::Mode mode;
    const char* name;
};

/// In the order of signalling, printing and dumping.
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

/// Returns true for a directory that nobody but its trusted owner can replace by a link. The shell reports
/// it.
bool isTrustedDirectory(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           (status.st_uid == 0 || status.st_uid == ::geteuid());
}

/// Creates the file that the shell writes to, and replaces a file that another user may have placed at this
/// predictable path. Returns false if another user may have, or may still create, a link there: the shell
/// would follow it. The shell reports other failures.
bool createScratchFile(const std::string& path) {
    ::unlink(path.c_str());
    const Base::UniqueFd file(::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, scratchFileMode));
    const bool nobodyCanCreateIt = std::ranges::find(errorsForEveryone, errno) != errorsForEveryone.end();
    return file || nobodyCanCreateIt || isTrustedDirectory(path);
}

std::string readScratchFile(const std::string& path) {
    const Base::UniqueFd file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!file) {
        fail("Error while opening ", path);
        return {};
    }
    std::string content;
    std::array<char, 16384> piece{};
    ssize_t size = 1;
    while (size > 0 && content.size() < listingSizeLimit) {
        size = Base::uninterrupted([&] { return ::read(file.get(), piece.data(), piece.size()); });
        content.append(piece.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0)));
    }
    if (size < 0) {
        fail("Error while reading ", path, ": ", std::strerror(errno));
    } else if (size > 0) {
        fail(path, " is larger than ", listingSizeLimit, " bytes, cut");
    }
    return content;
}

bool isCompleteDump(const std::string& text, const std::string& name) {
    return text.size() >= minimumCompleteDump && text.rfind("</" + name + "_dump>") != std::string::npos;
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
    if (!createScratchFile(pidFilePath)) {
        fail("Error while opening ", pidFilePath);
        return {};
    }
    if (!executeCommand("ps aux | grep -v -E \"grep|korvel\" | grep -E \"" + joined(names, "|") + "\" > " +
                        pidFilePath)) {
        return {};
    }
    const Pids found = parseProcessListing(readScratchFile(pidFilePath), names);
    executeCommand("rm -f " + pidFilePath);
    return found;
}

bool TiLogCollector::collectLogs(bool printRequested) {
    progress("Starting log collection from TI...");
    if (syslibLogEnabled) {
        logs[syslibSmLogId] = cutToLimit(readSmLog(syslibLogName, syslibLogSize, 0), syslibLogName);
    }
    for (const std::string& name : processes) {
        collectDump(name, printRequested);
    }
    return true;
}

void TiLogCollector::collectDump(const std::string& name, bool printRequested) {
    const std::string destination = collectorDir + "/" + name + ".log";
    const std::string source = "/tmp/" + name + ".log";
    if (!isRunning(name)) {
        return;
    }
    DumpCopy copy(source, destination,
                  {.sizeLimit = room(), .owner = fileOwnerOf(pids[name]).value_or(::geteuid())}, directory);
    sendSignal(name);
    progress("Dumping ", name, " to ", destination, "... ");
    std::string& text = logs[name];
    incomplete.erase(name);
    if (!waitForDump(copy, name, text)) {
        incomplete.insert(name);
    }
    if (copy.reportResult()) {
        std::remove(source.c_str());
    }
    count(text);
    if (printRequested) {
        removeDumpDirectory(destination);
    }
}

/// If the directory never existed, later copies fail too, and that is not a consequence of this removal.
void TiLogCollector::removeDumpDirectory(const std::string& destination) {
    if (isAccessible(collectorDir, F_OK)) {
        directory = DumpCopy::Directory::mayBeMissing;
    }
    removeFileAndItsDir(destination);
}

bool TiLogCollector::isRunning(const std::string& name) {
    const pid_t pid = pids[name];
    progress("Sending 'kill -", dumpSignal, "' signal to ", name, " [pid:", pid, "]...");
    if (pid < lowestPid) {
        progress("Invalid pid for ", name, " [pid:", pid, "], process may not be running, skipping");
    }
    return pid >= lowestPid;
}

/// Reports a failed signal; a dump may still exist.
void TiLogCollector::sendSignal(const std::string& name) {
    const pid_t pid = pids[name];
    if (::kill(pid, dumpSignal) != 0) {
        failErrno("Error while sending 'kill -", dumpSignal, "' signal to ", name, " [pid:", pid,
                  "], errno: ");
    }
}

/// A dump that existed before the signal may be an old one. It is accepted only if it has changed, or if no
/// new dump appears.
bool TiLogCollector::waitForDump(DumpCopy& copy, const std::string& name, std::string& text) {
    for (int round = 0; round < maximumDumpChecks && copy.sourceResponds(); ++round) {
        if (copy.hasSourceChanged()) {
            copy.take(text);
            if (isCompleteDump(text, name)) {
                return true;
            }
        }
        nap(dumpCheckInterval);
    }
    if (!copy.wasTaken() && copy.sourceResponds()) {
        copy.take(text);
    }
    return isCompleteDump(text, name);
}

bool TiLogCollector::copyDumpFileToWorkspace(const std::string& source, const std::string& destination) {
    std::string text;
    return DumpCopy(source, destination).take(text);
}

void TiLogCollector::removeFileAndItsDir(const std::string& path) {
    executeCommand("rm -rf $(dirname \"" + path + "\")");
}

bool TiLogCollector::printOnConsole() {
    for (const std::string& name : processes) {
        printLogHeader(name);
        print(logs[name], incomplete.contains(name) ? incompleteNote : "", '\n');
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

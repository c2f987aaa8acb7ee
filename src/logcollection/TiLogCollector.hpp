#pragma once

#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include "DumpCopy.hpp"
#include "LogCollector.hpp"
#include "ProcessListing.hpp"

namespace Korvel {

/// Collects the dumps that the NetFP processes write on a signal, and the SYSLIB shared-memory log.
class TiLogCollector : public LogCollector {
public:
    enum Mode : unsigned {
        netfpServer = 1,
        netfpProxy = 2,
        netfpMaster = 4,
        resmgrServer = 8,
        syslibLog = 16,
        allModes = 31,
    };

    using Pids = ProcessIds;

    static const std::string id;
    static const std::vector<std::string> netfpProcesses;
    static const std::string pidsFile;
    static const std::string tiLogsPath;  ///< reserved
    static const std::string syslibSmLogId;

    /// `mask`: the Mode bits to collect. Looks up all processes, regardless of the mask.
    TiLogCollector(const std::string& workspaceDir, unsigned mask);

    /// Signals each process and waits up to about one second for a complete dump. If `printRequested`,
    /// deletes the directory of the dumps after each process, so that later dumps cannot be copied.
    bool collectLogs(bool printRequested) override;
    bool printOnConsole() override;
    /// Writes the SYSLIB log; collectLogs() has already written the dumps.
    bool dumpToFiles() override;

    static bool isModeEnabled(Mode bit, unsigned mask) { return (bit & mask) != 0; }

    /// Returns the process ids of `names` from the system's process listing, which is written to the file
    /// `pidFilePath`. Omits processes that are not running.
    static Pids getPids(const std::vector<std::string>& names, const std::string& pidFilePath);

    /// Copies the present contents of a file. Returns false if either file cannot be opened or the copy is
    /// incomplete.
    static bool copyDumpFileToWorkspace(const std::string& source, const std::string& destination);

    /// Deletes the directory that contains `path`, with all its contents.
    static void removeFileAndItsDir(const std::string& path);

private:
    void collectDump(const std::string& name, bool printRequested);
    bool isRunning(const std::string& name);
    void sendSignal(const std::string& name);
    void removeDumpDirectory(const std::string& destination);
    static bool waitForDump(DumpCopy& copy, const std::string& name, std::string& text);
    bool reportMissingSyslibLog() const;

    bool syslibLogEnabled;
    std::vector<std::string> processes;
    Pids pids;
    std::unordered_map<std::string, std::string> logs;
    std::set<std::string> incomplete;                               // processes with an incomplete dump
    DumpCopy::Directory directory = DumpCopy::Directory::required;  // destination of the copies
};

}  // namespace Korvel

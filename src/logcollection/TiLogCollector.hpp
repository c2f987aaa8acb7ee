#pragma once

#include <set>
#include <string>
#include <unordered_map>
#include <vector>

#include <sys/types.h>

#include "DumpCopy.hpp"
#include "LogCollector.hpp"

namespace Korvel {

/// The dumps that the NetFP processes write when they are signalled, and the SYSLIB shared-memory log.
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

    using Pids = std::unordered_map<std::string, pid_t>;

    static const std::string id;
    static const std::vector<std::string> netfpProcesses;
    static const std::string pidsFile;
    static const std::string tiLogsPath;  ///< reserved
    static const std::string syslibSmLogId;

    /// `mask`: the Mode bits to collect. Looks all the processes up, whatever the mask.
    TiLogCollector(const std::string& workspaceDir, unsigned mask);

    /// Signals each process and waits up to about a second for its dump to be complete. With
    /// `printRequested` the directory of the dumps is deleted after each process, which leaves later ones
    /// without a place for theirs.
    bool collectLogs(bool printRequested) override;
    bool printOnConsole() override;
    /// Writes the SYSLIB log; the dumps are files already.
    bool dumpToFiles() override;

    static bool isModeEnabled(Mode bit, unsigned mask) { return (bit & mask) != 0; }

    /// The process ids behind `names` by the system's process listing, which passes through the file
    /// `pidFilePath`. Processes that do not run are left out.
    static Pids getPids(const std::vector<std::string>& names, const std::string& pidFilePath);

    /// Copies a file as far as it has been written. False where either file cannot be opened or the copy not
    /// be written whole.
    static bool copyDumpFileToWorkspace(const std::string& source, const std::string& destination);

    /// Deletes the whole directory that holds `path`.
    static void removeFileAndItsDir(const std::string& path);

private:
    void collectDump(const std::string& name, bool printRequested);
    bool isRunning(const std::string& name);
    void sendSignal(const std::string& name);
    void removeDumpsBeside(const std::string& destination);
    static bool awaitDump(DumpCopy& copy, const std::string& name, std::string& text);
    bool reportMissingSyslibLog() const;

    bool syslibLogEnabled;
    std::vector<std::string> processes;
    Pids pids;
    std::unordered_map<std::string, std::string> logs;
    std::set<std::string> incomplete;                               // processes whose dumps lack their end
    DumpCopy::Directory directory = DumpCopy::Directory::expected;  // of the dumps' copies
};

}  // namespace Korvel

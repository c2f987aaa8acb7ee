#pragma once

#include <map>
#include <string>
#include <vector>

#include "LogCollector.hpp"

namespace Korvel {

/// Collects the state files that the dispatchers publish in "/tmp/fuse/", and the dispatcher's history log
/// from shared memory.
class FuseLogCollector : public LogCollector {
public:
    enum Mode : unsigned { information = 1, statistics = 2, dispatcherLog = 4, allModes = 7 };

    struct Entry {
        std::string directory;  ///< ends in "/"
        std::string fileName;
        std::string title;  ///< heading on the console
    };

    static const std::string id;
    static const std::string fusePath;
    static const std::string fuseDirListFileName;   ///< reserved
    static const std::string fuseFileListFileName;  ///< reserved
    static const std::vector<Entry> fuseInfoFiles;
    static const std::vector<Entry> fuseStatsFiles;
    /// Only if the board has no SFN instance.
    static const std::vector<Entry> fuseStatsFilesIWF;
    static const std::vector<Entry> fuseLogsFiles;

    /// `mask`: the Mode bits to collect, for the currently selected instances.
    FuseLogCollector(const std::string& workspaceDir, unsigned mask);

    bool collectLogs(bool printRequested) override;
    bool printOnConsole() override;
    /// Writes a file for each source with content; reports empty sources.
    bool dumpToFiles() override;

    static bool isModeEnabled(Mode mode, unsigned mask) { return (mode & mask) != 0; }

    /// Adds the files of `table` to those to collect. `subDir` ("" or "NAME/") is relative to the entries'
    /// own directories.
    void insertActiveFiles(const std::vector<Entry>& table, const std::string& subDir);

    /// `relative`: path relative to the fuse directory.
    static bool directoryExists(const std::string& relative);

private:
    void readState(const std::string& path);
    bool dump(const Entry& entry);

    std::vector<Entry> activeFiles;
    std::map<std::string, std::string> results;  // by full path
};

}  // namespace Korvel

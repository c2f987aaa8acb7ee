#include "FuseLogCollector.hpp"

#include "Configuration.hpp"
#include "Console.hpp"
#include "ConsoleHeader.hpp"
#include "FileAccess.hpp"
#include "OutputFile.hpp"
#include "Shell.hpp"
#include "SmLogReader.hpp"
#include "SmLogs.hpp"

namespace Korvel {
namespace {

constexpr unsigned historyLogSize = 0x200000;
const std::string historyLog = "HistoryLog";

}  // namespace

const std::string FuseLogCollector::id = "fuse";
const std::string FuseLogCollector::fusePath = "/tmp/fuse/";
const std::string FuseLogCollector::fuseDirListFileName = "fuse_dir.tmp";
const std::string FuseLogCollector::fuseFileListFileName = "fuse_files.tmp";
const std::vector<FuseLogCollector::Entry> FuseLogCollector::fuseInfoFiles = {
    {fusePath, "tracing_on", "Tracing Enabled"},
};
const std::vector<FuseLogCollector::Entry> FuseLogCollector::fuseStatsFiles = {
    {fusePath, "dispatcherCpu", "Dispatcher CPU"},
    {fusePath, "dmaStats", "Dma Service Statistics"},
};
const std::vector<FuseLogCollector::Entry> FuseLogCollector::fuseStatsFilesIWF = {
    {fusePath, "fpBridgeStats", "FPBridge Statistics"},
};
const std::vector<FuseLogCollector::Entry> FuseLogCollector::fuseLogsFiles = {
    {fusePath, historyLog, "NETFP LOG"},
};

FuseLogCollector::FuseLogCollector(const std::string& workspaceDir, unsigned mask)
    : LogCollector(workspaceDir + "/fuse") {
    for (auto instance = Configuration::getInstanceBegin(); instance != Configuration::getInstanceEnd();
         ++instance) {
        const std::string subDir = Configuration::dispInstanceToString(*instance) + "/";
        if (isModeEnabled(information, mask)) {
            insertActiveFiles(fuseInfoFiles, subDir);
        }
        if (isModeEnabled(statistics, mask)) {
            insertActiveFiles(fuseStatsFiles, subDir);
            if (*instance == Configuration::IWF && !directoryExists("sfn/")) {
                insertActiveFiles(fuseStatsFilesIWF, subDir);
            }
        }
    }
    if (isModeEnabled(dispatcherLog, mask)) {
        insertActiveFiles(fuseLogsFiles, "");
    }
}

void FuseLogCollector::insertActiveFiles(const std::vector<Entry>& table, const std::string& subDir) {
    for (const Entry& entry : table) {
        activeFiles.push_back({entry.directory + subDir, entry.fileName, entry.title});
    }
}

bool FuseLogCollector::directoryExists(const std::string& relative) {
    const std::optional<FileState> state = stateOf(fusePath + relative);
    return state && state->isDirectory();
}

bool FuseLogCollector::collectLogs(bool /*printRequested*/) {
    progress("Starting log collection from fuse file system...");
    for (const Entry& entry : activeFiles) {
        const std::string path = entry.directory + entry.fileName;
        if (entry.fileName == historyLog) {
            progress("Reading ", entry.fileName, "...");
            results[path] = cutToLimit(readSmLog(dispatcherLogName, historyLogSize, 0), dispatcherLogName);
        } else {
            progress("Reading ", path, "...");
            readState(path);
        }
    }
    return true;
}

void FuseLogCollector::readState(const std::string& path) {
    const ReadingRules rules{.sizeLimit = room()};
    std::string& text = results[path];
    text.clear();
    reportReading(path, readFile(path, text, rules), rules);
    count(text);
}

bool FuseLogCollector::printOnConsole() {
    for (const Entry& entry : activeFiles) {
        printLogHeader(entry.title);
        print(results[entry.directory + entry.fileName], '\n');
    }
    return std::cout.good();
}

bool FuseLogCollector::dumpToFiles() {
    bool written = true;
    for (const Entry& entry : activeFiles) {
        written = dump(entry) && written;
    }
    return written;
}

/// Returns true also if there is no content to write.
bool FuseLogCollector::dump(const Entry& entry) {
    const std::size_t found = entry.directory.find(fusePath);
    if (found == std::string::npos) {
        return true;
    }
    const std::string outDir = collectorDir + "/" + entry.directory.substr(found + fusePath.size());
    executeCommand("mkdir -p " + outDir);
    const std::string file = outDir + entry.fileName + ".log";
    const std::string& content = results[entry.directory + entry.fileName];
    if (content.empty()) {
        fail("Output of ", file, " is empty");
        return true;
    }
    return writeDumpFile(file, content);
}

}  // namespace Korvel

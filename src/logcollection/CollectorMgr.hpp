#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CollectionKeywords.hpp"
#include "IManager.hpp"
#include "LogCollector.hpp"

namespace Korvel {

/// Log collection: collects the logs that the coverage keywords select. Prints them, dumps them to files or
/// packs them, as the output-mode keywords request.
class CollectorMgr : public IManager {
public:
    CollectorMgr();

    /// Returns true if any argument is an output-mode keyword or "all".
    bool detectKeywords(int argc, char** argv) override;
    void printHelpMsg(const std::string& prefix, const std::string& programName) override;
    /// Returns false, and collects nothing, if an argument is not a keyword or no output mode is given.
    /// Failures of the collection itself do not change the result.
    bool resolveRequest(int argc, char** argv) override;

    // The steps of resolveRequest().

    static bool noOptionsSet(const CoverageMasks& masks);

    /// Executes a parsed request: collect, dump, pack, print.
    void processRequest(unsigned outputMask, const CoverageMasks& masks);

    /// Creates the collectors whose masks are not 0, in the order of their ids.
    void registerLogCollectors(const CoverageMasks& masks);

    /// Creates the collector with the entry's id. Returns null if its mask is 0 or the id is unknown.
    std::unique_ptr<LogCollector> createCollector(const std::pair<const std::string, unsigned>& entry) const;

    void collectLogs(bool printRequested);
    void printLogsOnConsole();
    void dumpLogsToFiles();

    /// Packs the work directory.
    void makeTgzPackage(unsigned outputMask) const;

    /// Makes the signal harmless. Uses a handler, because child processes would inherit SIG_IGN.
    static void disableSignal(int signalNumber);
    static void sigHandlerNoOp(int signalNumber);

private:
    const std::string workspaceDir = "/tmp/korvel";
    const std::string packageBasePath = "/ffs/run/logs/netfp_logs";
    std::vector<std::unique_ptr<LogCollector>> collectors;
};

}  // namespace Korvel

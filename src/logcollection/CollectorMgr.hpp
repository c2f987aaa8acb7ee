#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "CollectionKeywords.hpp"
#include "IManager.hpp"
#include "LogCollector.hpp"

namespace Korvel {

/// Log collection: gathers what the coverage keywords name and prints it, dumps it to files or packs it, as
/// the output-mode keywords say.
class CollectorMgr : public IManager {
public:
    CollectorMgr();

    /// Any output-mode keyword, or "all", anywhere among the arguments.
    bool detectKeywords(int argc, char** argv) override;
    void printHelpMsg(const std::string& prefix, const std::string& programName) override;
    /// False, with nothing collected, where an argument is no keyword or none of them is an output mode.
    /// Failures of the collection itself change nothing.
    bool resolveRequest(int argc, char** argv) override;

    // The steps of resolveRequest().

    static bool noOptionsSet(const CoverageMasks& masks);

    /// Carries out a request that was understood: collect, dump, pack, print.
    void processRequest(unsigned outputMask, const CoverageMasks& masks);

    /// Creates the collectors whose masks are not 0, in the order of their ids.
    void registerLogCollectors(const CoverageMasks& masks);

    /// The collector with the entry's id; empty where its mask is 0 or there is no such collector.
    std::unique_ptr<LogCollector> createCollector(const std::pair<const std::string, unsigned>& entry) const;

    void collectLogs(bool printRequested);
    void printLogsOnConsole();
    void dumpLogsToFiles();

    /// Packs the work directory.
    void makeTgzPackage(unsigned outputMask) const;

    /// Lets the signal pass without effect. By a handler, not by ignoring it, which child processes would
    /// inherit.
    static void disableSignal(int signalNumber);
    static void sigHandlerNoOp(int signalNumber);

private:
    const std::string workspaceDir = "/tmp/korvel";
    const std::string packageBasePath = "/ffs/run/logs/netfp_logs";
    std::vector<std::unique_ptr<LogCollector>> collectors;
};

}  // namespace Korvel

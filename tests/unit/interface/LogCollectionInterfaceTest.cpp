// The interface of src/logcollection.

#include <algorithm>
#include <concepts>
#include <iterator>
#include <map>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "CollectorMgr.hpp"
#include "FuseLogCollector.hpp"
#include "LogCollector.hpp"
#include "MmiLogCollector.hpp"
#include "TiLogCollector.hpp"

namespace {

using namespace Korvel;
using std::same_as;
using std::string;

using Masks = std::map<string, unsigned>;

template <typename Collector>
concept ACollector =
    std::derived_from<Collector, LogCollector> && std::constructible_from<Collector, const string&, unsigned>;

static_assert(std::is_abstract_v<LogCollector> && std::has_virtual_destructor_v<LogCollector>);
static_assert(requires(LogCollector & collector, bool printRequested) {
    { collector.collectLogs(printRequested) } -> same_as<bool>;
    { collector.printOnConsole() } -> same_as<bool>;
    { collector.dumpToFiles() } -> same_as<bool>;
});

static_assert(std::derived_from<CollectorMgr, IManager> && std::default_initializable<CollectorMgr>);
static_assert(requires(CollectorMgr & manager, int argc, char** argv, const string& text) {
    { manager.detectKeywords(argc, argv) } -> same_as<bool>;
    { manager.resolveRequest(argc, argv) } -> same_as<bool>;
    { manager.printHelpMsg(text, text) } -> same_as<void>;
});
static_assert(requires(CollectorMgr & manager, const Masks& masks, unsigned outputMask,
                       const std::pair<const string, unsigned>& entry, bool printRequested) {
    { manager.noOptionsSet(masks) } -> same_as<bool>;
    { manager.processRequest(outputMask, masks) } -> same_as<void>;
    { manager.registerLogCollectors(masks) } -> same_as<void>;
    { manager.createCollector(entry) } -> same_as<std::unique_ptr<LogCollector>>;
    { manager.collectLogs(printRequested) } -> same_as<void>;
    { manager.printLogsOnConsole() } -> same_as<void>;
    { manager.dumpLogsToFiles() } -> same_as<void>;
    { manager.makeTgzPackage(outputMask) } -> same_as<void>;
    { manager.disableSignal(15) } -> same_as<void>;
    { CollectorMgr::sigHandlerNoOp(15) } -> same_as<void>;
});

static_assert(ACollector<TiLogCollector> && std::is_enum_v<TiLogCollector::Mode>);
static_assert(requires(TiLogCollector & collector, const std::vector<string>& names, const string& path,
                       TiLogCollector::Mode mode) {
    { collector.getPids(names, path).at(path) } -> std::convertible_to<int>;
    { collector.copyDumpFileToWorkspace(path, path) } -> same_as<bool>;
    { collector.removeFileAndItsDir(path) } -> same_as<void>;
    { TiLogCollector::isModeEnabled(mode, mode) } -> same_as<bool>;
});

static_assert(ACollector<MmiLogCollector>);
static_assert(std::copyable<MmiLogCollector::Entry>);

static_assert(ACollector<FuseLogCollector> && std::is_enum_v<FuseLogCollector::Mode>);
static_assert(std::copyable<FuseLogCollector::Entry>);
static_assert(requires(FuseLogCollector & collector, const FuseLogCollector& fixed,
                       const std::vector<FuseLogCollector::Entry>& table, const string& relative,
                       FuseLogCollector::Mode mode) {
    { collector.insertActiveFiles(table, relative) } -> same_as<void>;
    { fixed.directoryExists(relative) } -> same_as<bool>;
    { FuseLogCollector::isModeEnabled(mode, mode) } -> same_as<bool>;
});

using Rows = std::vector<string>;

string shown(const MmiLogCollector::Entry& entry) {
    return entry.command + " / " + entry.title;
}

string shown(const FuseLogCollector::Entry& entry) {
    return entry.directory + entry.fileName + " / " + entry.title;
}

template <typename Entry>
Rows shown(const std::vector<Entry>& table) {
    Rows rows;
    std::ranges::transform(table, std::back_inserter(rows), [](const Entry& entry) { return shown(entry); });
    return rows;
}

TEST(LogCollectionInterface, NamesTheManagerAndTheCollectors) {
    EXPECT_EQ(CollectorMgr().getName(), "LogCollection");
    EXPECT_EQ(TiLogCollector::id, "ti");
    EXPECT_EQ(MmiLogCollector::id, "mmi");
    EXPECT_EQ(FuseLogCollector::id, "fuse");
}

TEST(LogCollectionInterface, NamesTheProcessesAndFilesOfTheNetfpStack) {
    EXPECT_EQ(TiLogCollector::netfpProcesses,
              (Rows{"netfp_server", "netfp_proxy", "netfp_master", "resmgr_server"}));
    EXPECT_EQ(TiLogCollector::pidsFile, "pids.tmp");
    EXPECT_EQ(TiLogCollector::tiLogsPath, "/var/log/");
    EXPECT_EQ(TiLogCollector::syslibSmLogId, "syslib_sm_log");
}

TEST(LogCollectionInterface, ListsTheCommandsOfTheDispatchers) {
    EXPECT_EQ(shown(MmiLogCollector::mmiInfoCmds), Rows{"SocketSvcInfo / Socket Service Info"});
    EXPECT_EQ(shown(MmiLogCollector::mmiStatsCmds),
              (Rows{"SocketSvcCounters / Socket Service Counters", "ReassemblyCounters / Reassembly Counters",
                    "HeapStats / Heap Statistics"}));
}

TEST(LogCollectionInterface, ListsTheStateFiles) {
    EXPECT_EQ(FuseLogCollector::fusePath, "/tmp/fuse/");
    EXPECT_EQ(FuseLogCollector::fuseDirListFileName, "fuse_dir.tmp");
    EXPECT_EQ(FuseLogCollector::fuseFileListFileName, "fuse_files.tmp");
    EXPECT_EQ(shown(FuseLogCollector::fuseInfoFiles), Rows{"/tmp/fuse/tracing_on / Tracing Enabled"});
    EXPECT_EQ(shown(FuseLogCollector::fuseStatsFiles), (Rows{"/tmp/fuse/dispatcherCpu / Dispatcher CPU",
                                                             "/tmp/fuse/dmaStats / Dma Service Statistics"}));
    EXPECT_EQ(shown(FuseLogCollector::fuseStatsFilesIWF),
              Rows{"/tmp/fuse/fpBridgeStats / FPBridge Statistics"});
    EXPECT_EQ(shown(FuseLogCollector::fuseLogsFiles), Rows{"/tmp/fuse/HistoryLog / NETFP LOG"});
}

TEST(LogCollectionInterface, ReturnsTheBitsOfAMask) {
    using Ti = TiLogCollector::Mode;
    using Fuse = FuseLogCollector::Mode;
    for (const unsigned bit : {1U, 2U, 4U, 8U, 16U}) {
        EXPECT_TRUE(TiLogCollector::isModeEnabled(Ti{bit}, Ti{31}));
        EXPECT_FALSE(TiLogCollector::isModeEnabled(Ti{bit}, Ti{31 & ~bit}));
    }
    for (const unsigned bit : {1U, 2U, 4U}) {
        EXPECT_TRUE(FuseLogCollector::isModeEnabled(Fuse{bit}, Fuse{7}));
        EXPECT_FALSE(FuseLogCollector::isModeEnabled(Fuse{bit}, Fuse{7 & ~bit}));
    }
}

}  // namespace

#include "CollectorMgr.hpp"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <exception>

#include "CollectionLock.hpp"
#include "Configuration.hpp"
#include "Console.hpp"
#include "FuseLogCollector.hpp"
#include "MmiLogCollector.hpp"
#include "PackageBuilder.hpp"
#include "TiLogCollector.hpp"

namespace Korvel {
namespace {

constexpr std::chrono::seconds lockTimeout{60};

bool acceptsCommandLine(std::string_view word) {
    const CollectionKeyword* const keyword = findCollectionKeyword(word);
    return keyword != nullptr && (keyword->output != 0 || keyword->word == "all");
}

template <typename Collector>
std::unique_ptr<LogCollector> create(const std::string& workspaceDir, unsigned mask) {
    return std::make_unique<Collector>(workspaceDir, mask);
}

struct CollectorType {
    const std::string& id;
    std::unique_ptr<LogCollector> (*create)(const std::string& workspaceDir, unsigned mask);
};

const CollectorType collectorTypes[] = {
    {TiLogCollector::id, create<TiLogCollector>},
    {MmiLogCollector::id, create<MmiLogCollector>},
    {FuseLogCollector::id, create<FuseLogCollector>},
};

/// Runs the work of one collector. Reports an exception, so that the other collectors still run.
template <typename Work>
void runIsolated(Work work) {
    try {
        work();
    } catch (const std::exception& failure) {
        fail("Error: ", failure.what());
    }
}

void printHelpLines(const std::string& prefix, std::span<const CollectionKeyword> keywords) {
    for (const CollectionKeyword& keyword : keywords) {
        if (!keyword.help.empty()) {
            print(prefix, keyword.help, '\n');
        }
    }
}

}  // namespace

CollectorMgr::CollectorMgr() : IManager("LogCollection") {
}

bool CollectorMgr::detectKeywords(int argc, char** argv) {
    return argc > 1 && std::any_of(argv + 1, argv + argc, acceptsCommandLine);
}

void CollectorMgr::printHelpMsg(const std::string& prefix, const std::string& programName) {
    print("  Log Collection:\n");
    print(prefix, "== Output Mode ==\n");
    printHelpLines(prefix, outputKeywords());
    print(prefix, "== Coverage ==\n");
    printHelpLines(prefix, coverageKeywords());
    print(prefix, "    (*) possible performance impact\n", "\n");
    print(prefix, "== Examples ==\n");
    print(prefix, "  ", programName, " pkg\n");
    print(prefix, "  ", programName, " -v print pkg netfp dall\n");
    print(prefix, "  ", programName, " print dump server dinf dstat proxy\n", "\n");
}

bool CollectorMgr::resolveRequest(int argc, char** argv) {
    CoverageMasks masks = noCoverage();
    unsigned outputMask = 0;
    for (int index = 1; index < argc; ++index) {
        const CollectionKeyword* const keyword = findCollectionKeyword(argv[index]);
        if (keyword == nullptr) {
            return fail("Unknown parameter: ", argv[index]);
        }
        outputMask |= keyword->output;
        applyCoverage(*keyword, masks);
    }
    if (outputMask == 0) {
        return fail("No parameters were specified");
    }
    if (noOptionsSet(masks)) {
        masks = fullCoverage();
    }
    const bool skipped = (outputMask & OutputMode::shutdown) != 0 && !Configuration::getCollectLogsOnExit();
    if (!skipped) {
        processRequest(outputMask, masks);
    }
    return true;
}

bool CollectorMgr::noOptionsSet(const CoverageMasks& masks) {
    return std::all_of(masks.begin(), masks.end(), [](const auto& entry) { return entry.second == 0; });
}

void CollectorMgr::processRequest(unsigned outputMask, const CoverageMasks& masks) {
    if ((outputMask & OutputMode::package) != 0) {
        disableSignal(SIGTERM);
    }
    {
        const CollectionLock lock(workspaceDir, lockTimeout);
        registerLogCollectors(masks);
        collectLogs((outputMask & OutputMode::print) != 0);
        if ((outputMask & OutputMode::dump) != 0) {
            dumpLogsToFiles();
        }
        if ((outputMask & OutputMode::package) != 0) {
            makeTgzPackage(outputMask);
        }
    }
    // Print without the lock: the reader of the output may be slow.
    if ((outputMask & OutputMode::print) != 0) {
        printLogsOnConsole();
    }
}

void CollectorMgr::registerLogCollectors(const CoverageMasks& masks) {
    for (const auto& entry : masks) {
        runIsolated([&] {
            std::unique_ptr<LogCollector> collector = createCollector(entry);
            if (collector != nullptr) {
                collectors.push_back(std::move(collector));
            }
        });
    }
}

std::unique_ptr<LogCollector> CollectorMgr::createCollector(
    const std::pair<const std::string, unsigned>& entry) const {
    const auto& [id, mask] = entry;
    if (mask == 0) {
        progress("Creation of LogCollector of type (", id, ") skipped - no options specified");
        return nullptr;
    }
    for (const CollectorType& type : collectorTypes) {
        if (type.id == id) {
            return type.create(workspaceDir, mask);
        }
    }
    fail("Attempt to create unsupported LogCollector (", id, ")");
    return nullptr;
}

void CollectorMgr::collectLogs(bool printRequested) {
    for (const auto& collector : collectors) {
        runIsolated([&] { collector->collectLogs(printRequested); });
    }
}

void CollectorMgr::printLogsOnConsole() {
    for (const auto& collector : collectors) {
        runIsolated([&] { collector->printOnConsole(); });
    }
}

void CollectorMgr::dumpLogsToFiles() {
    for (const auto& collector : collectors) {
        runIsolated([&] { collector->dumpToFiles(); });
    }
}

void CollectorMgr::makeTgzPackage(unsigned outputMask) const {
    PackageBuilder(workspaceDir, packageBasePath).build(outputMask);
}

void CollectorMgr::disableSignal(int signalNumber) {
    struct sigaction action {};
    action.sa_handler = sigHandlerNoOp;
    sigemptyset(&action.sa_mask);
    ::sigaction(signalNumber, &action, nullptr);
}

void CollectorMgr::sigHandlerNoOp(int /*signalNumber*/) {
}

}  // namespace Korvel

// Measures time and memory of korvel and compares them with limits. Must run on a simulated board with full
// shared-memory logs. Exits 1 if a figure exceeds its limit. --verbose also prints each benchmark.

#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <string>
#include <string_view>

#include <benchmark/benchmark.h>

#include "CommandTimes.hpp"
#include "DumpedMemory.hpp"
#include "Figures.hpp"
#include "MemoryPeak.hpp"

namespace {

/// Makes the state files larger than the limits of a collection, both for one file and for all.
void enlargeStateFiles() {
    for (const char* const name :
         {"iwf/dispatcherCpu", "iwf/dmaStats", "sfn/dispatcherCpu", "sfn/dmaStats"}) {
        std::filesystem::resize_file(std::string("/tmp/fuse/") + name, std::uintmax_t{3} << 30U);
    }
}

bool reportAll(bool verbose) {
    constexpr double kiBPerMiB = 1024;
    fillDumpedMemory();
    auto times = measureCommandTimes(verbose);
    const auto dumpMemoryUse = static_cast<double>(peakMemoryKiB(memoryDumpCommand));
    const double memory = static_cast<double>(peakMemoryKiB({"korvel", "-d", "all", "print"}));
    enlargeStateFiles();
    const auto largestUse = static_cast<double>(
        peakMemoryKiB({"sh", "-c", "exec korvel -d all print 2> /dev/null"}));  // it reports each cut
    bool kept = true;
    for (const Figure& figure : {
             Figure{"korvel --help, against a program that prints one line",
                    times[printHelp] / times[printOneLine], 1.3, "times"},
             Figure{"korvel -d all dump dinf dstat, beyond its child processes",
                    times[dumpInfoAndStatistics] - times[startItsChildren], 3, "ms"},
             Figure{"korvel getport eth1, beyond getport 4", times[getPortByName] - times[getPortByNumber], 5,
                    "ms"},
             Figure{"korvel getport 4, against two shells and cat",
                    times[getPortByNumber] / times[readKernelCommandLine], 2, "times"},
             Figure{"korvel portswap, beyond getport 4", times[swapPorts] - times[getPortByNumber], 20, "ms"},
             Figure{"korvel mem_dump of 64 MiB into a pipe, against cat of its text",
                    times[pipeDump] / times[pipeText], 1.3, "times"},
             Figure{"korvel mem_dump of 64 MiB, against xxd -g1 -u", times[dumpMemory] / times[dumpByXxd],
                    0.5, "times"},
             Figure{"korvel mem_dump of 64 MiB, against hexdump -C", times[dumpMemory] / times[dumpByHexdump],
                    0.05, "times"},
             Figure{"korvel mem_dump of 64 MiB, private and file memory", dumpMemoryUse / kiBPerMiB, 6,
                    "MiB"},
             Figure{"korvel -d all print with full logs, private and file memory", memory / kiBPerMiB, 12,
                    "MiB"},
             Figure{"korvel -d all print of huge files, private and file memory", largestUse / kiBPerMiB, 64,
                    "MiB"},
         }) {
        kept = report(figure) && kept;
    }
    return kept;
}

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    const bool verbose = argc == 2 && std::string_view(argv[1]) == "--verbose";
    try {
        return reportAll(verbose) ? 0 : 1;
    } catch (const std::exception& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
}

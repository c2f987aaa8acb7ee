#include "CommandTimes.hpp"

#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <vector>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "DumpedMemory.hpp"

namespace {

/// Runs a command, discards its standard output and waits for its exit.
void runCommand(std::vector<std::string> words) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    pid_t child = -1;
    const int error = posix_spawnp(&child, arguments.front(), &actions, nullptr, arguments.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = -1;
    if (error != 0 || waitpid(child, &status, 0) != child || status != 0) {
        throw std::runtime_error("failed: " + words.front());
    }
}

/// Makes the directories of a dump of information and statistics for both instances, with one call each.
void makeAllDirectories() {
    for (const char* const directory : {"fuse", "mmi", "fuse/iwf/", "fuse/iwf/", "fuse/iwf/", "fuse/sfn/",
                                        "fuse/sfn/", "fuse/sfn/", "mmi/iwf/", "mmi/sfn/"}) {
        const std::string command = std::string("mkdir -p /tmp/korvel/") + directory;
        if (std::system(command.c_str()) != 0) {
            throw std::runtime_error("failed: " + command);
        }
    }
}

constexpr int manyTimes = 15;
constexpr int fewTimes = 3;  // for work that takes seconds

void addBenchmark(const char* name, int repetitions, const std::function<void()>& work) {
    benchmark::RegisterBenchmark(name,
                                 [work](benchmark::State& state) {
                                     for ([[maybe_unused]] auto round : state) {
                                         work();
                                     }
                                 })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->Repetitions(repetitions)
        ->ReportAggregatesOnly();
}

/// Collects the medians. Prints all figures only on request, and in colours only on a terminal.
class MedianCollector : public benchmark::ConsoleReporter {
public:
    explicit MedianCollector(bool showsAll)
        : ConsoleReporter(isatty(STDOUT_FILENO) == 1 ? OO_ColorTabular : OO_Tabular), shows(showsAll) {}

    bool ReportContext(const Context& context) override {
        return !shows || ConsoleReporter::ReportContext(context);
    }

    void ReportRuns(const std::vector<Run>& runs) override {
        if (shows) {
            ConsoleReporter::ReportRuns(runs);
        }
        for (const Run& run : runs) {
            if (run.aggregate_name == "median") {
                medians[run.run_name.function_name] = run.GetAdjustedRealTime();
            }
        }
    }

    std::map<std::string, double> medians;

private:
    const bool shows;
};

}  // namespace

std::map<std::string, double> measureCommandTimes(bool showAll) {
    addBenchmark(dumpInfoAndStatistics, manyTimes, [] {
        runCommand({"korvel", "-d", "all", "dump", "dinf", "dstat"});
    });
    addBenchmark(makeDirectories, manyTimes, makeAllDirectories);
    addBenchmark(getPortByName, manyTimes, [] { runCommand({"korvel", "getport", "eth1"}); });
    addBenchmark(getPortByNumber, manyTimes, [] { runCommand({"korvel", "getport", "4"}); });
    addBenchmark(swapPorts, manyTimes, [] { runCommand({"korvel", "portswap", "eth0", "eth1"}); });
    addBenchmark(dumpMemory, fewTimes, [] { runCommand(memoryDumpCommand); });
    addBenchmark(dumpByXxd, fewTimes, [] {
        runCommand({"xxd", "-g1", "-u", "-l", std::to_string(dumpedBytes), memoryFile});
    });
    addBenchmark(dumpByHexdump, fewTimes, [] {
        runCommand({"hexdump", "-C", "-n", std::to_string(dumpedBytes), memoryFile});
    });
    addBenchmark(readKernelCommandLine, manyTimes, [] {
        runCommand({"sh", "-c", "sh -c \"/bin/cat /proc/cmdline\""});
    });
    MedianCollector collector(showAll);
    benchmark::RunSpecifiedBenchmarks(&collector);
    return collector.medians;
}

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

/// Runs a command to its end with its output thrown away.
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

/// The directories that dumping information and statistics of both instances makes, one call each.
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

/// Keeps the medians, and shows all figures as usual where they are wanted: in colours on a terminal alone.
class MedianKeeper : public benchmark::ConsoleReporter {
public:
    explicit MedianKeeper(bool showsAll)
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
    MedianKeeper keeper(showAll);
    benchmark::RunSpecifiedBenchmarks(&keeper);
    return keeper.medians;
}

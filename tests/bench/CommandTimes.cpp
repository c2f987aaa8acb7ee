#include "CommandTimes.hpp"

#include <cstdio>
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

const std::string oneLineProgram = "/opt/korvel/tests/korvel_one_line_bench";
const std::string dumpedText = "/dev/shm/dumped_text";

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

void runShell(const std::string& command) {
    if (std::system(command.c_str()) != 0) {
        throw std::runtime_error("failed: " + command);
    }
}

/// Starts the programs that a dump of information and statistics starts for both instances, and one like
/// korvel itself.
void startAllChildren() {
    runCommand({oneLineProgram});
    runShell("/bin/cat /proc/cmdline > /dev/null");
    for (const char* const directory : {"fuse", "mmi", "fuse/iwf/", "fuse/iwf/", "fuse/iwf/", "fuse/sfn/",
                                        "fuse/sfn/", "fuse/sfn/", "mmi/iwf/", "mmi/sfn/"}) {
        runShell(std::string("mkdir -p /tmp/korvel/") + directory);
    }
}

std::string joined(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += word + ' ';
    }
    return text;
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
    addBenchmark(startItsChildren, manyTimes, startAllChildren);
    addBenchmark(printHelp, manyTimes, [] { runCommand({"korvel", "--help"}); });
    addBenchmark(printOneLine, manyTimes, [] { runCommand({oneLineProgram}); });
    addBenchmark(getPortByName, manyTimes, [] { runCommand({"korvel", "getport", "eth1"}); });
    addBenchmark(getPortByNumber, manyTimes, [] { runCommand({"korvel", "getport", "4"}); });
    addBenchmark(swapPorts, manyTimes, [] { runCommand({"korvel", "portswap", "eth0", "eth1"}); });
    addBenchmark(dumpMemory, fewTimes, [] { runCommand(memoryDumpCommand); });
    const std::string command = joined(memoryDumpCommand);
    runShell(command + " > " + dumpedText);
    addBenchmark(pipeDump, fewTimes, [&command] { runShell(command + " | cat > /dev/null"); });
    addBenchmark(pipeText, fewTimes, [] { runShell("cat " + dumpedText + " | cat > /dev/null"); });
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
    std::remove(dumpedText.c_str());
    return collector.medians;
}

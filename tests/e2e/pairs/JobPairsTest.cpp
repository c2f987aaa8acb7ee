#include <algorithm>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "Process.hpp"
#include "TestFiles.hpp"
#include "TextFile.hpp"

namespace fs = std::filesystem;
using Boardsim::Board;
using Boardsim::linesOf;

namespace {

using Words = std::vector<std::string>;

constexpr const char* package = "/ffs/run/logs/netfp_logs_post_mortem.tgz";

/// The errors that a collection may report beside the archiver, which writes to the files that are packed.
constexpr const char* fileChanged =
    "Command: /bin/tar -czf /ffs/run/logs/netfp_logs_post_mortem.tgz -C /tmp/korvel/ ./ 2> /dev/null exited "
    "with error, exit code: 1\n";

/// The names of all members of the package, with or without those of the archiver, in order.
Words packedNames(bool withArchive) {
    Words names = linesOf(run({"tar", "-tzf", package}).out);
    std::erase_if(names,
                  [&](const std::string& name) { return !withArchive && name.starts_with("./archive/"); });
    std::sort(names.begin(), names.end());
    return names;
}

/// The output of a dump without the program's address of the memory, because that differs in each run.
Outcome withoutAddresses(Outcome outcome) {
    const std::string label = "    Virtual:  ";
    for (std::size_t start = outcome.out.find(label); start != std::string::npos;
         start = outcome.out.find(label, start + 1)) {
        const std::size_t address = start + label.size();
        outcome.out.erase(address, outcome.out.find('\n', address) - address);
    }
    return outcome;
}

/// A job that ends by itself and always does the same.
struct Job {
    std::string name;
    Words arguments;
};

/// Each action that talks to the NetFP master has its own socket. On the default socket, the later of two
/// would take the earlier one's answers.
const std::vector<Job> jobs{
    {"collection", {"-d", "all", "pkg-pm"}},
    {"getport", {"-c", "/tmp/client-getport", "getport", "eth0"}},
    {"mirrorport", {"-c", "/tmp/client-mirrorport", "mirrorport", "enable", "eth0", "eth1"}},
    {"loopbackport", {"-c", "/tmp/client-loopbackport", "loopbackport", "enable", "eth1"}},
    {"portswap", {"-c", "/tmp/client-portswap", "portswap", "eth2", "eth3"}},
    {"addmulticastmac",
     {"-c", "/tmp/client-addmulticastmac", "addmulticastmac", "01:00:5e:00:00:fb", "eth1"}},
    {"resetqosstats", {"-d", "all", "resetqosstats"}},
    {"mem_dump", {"mem_dump", "0xeb700040", "60"}},
    {"desc_dump", {"desc_dump", "0xeb6b6100", "70"}},
    {"add_interface", {"add_interface"}},
};

class JobPairsTest : public testing::Test {
protected:
    JobPairsTest() {
        for (const Job& job : jobs) {
            alone[job.name] = end(start(job), job);
        }
        packedAlone = packedNames(false);
    }

    /// A running job. An interface can be added only once, so each run adds another one.
    struct Run {
        std::unique_ptr<Process> process;
        std::string interface = {};
    };

    Run start(const Job& job) {
        Words command{"korvel"};
        command.insert(command.end(), job.arguments.begin(), job.arguments.end());
        std::string interface;
        if (job.name == "add_interface") {
            interface = "lte" + std::to_string(++interfaces);
            command.push_back(interface);
        }
        return {std::make_unique<Process>(command), interface};
    }

    static Outcome end(const Run& run, const Job& job) {
        Outcome outcome = withoutAddresses(run.process->wait());
        const std::size_t interface = outcome.out.find(run.interface);
        if (job.name == "add_interface" && interface != std::string::npos) {
            outcome.out.erase(interface, run.interface.size());
        }
        return outcome;
    }

    /// Ends a run and checks that it did the same as alone.
    void expectAsAlone(const Run& run, const Job& job) {
        Outcome outcome = end(run, job);
        if (isArchived() && outcome.err == fileChanged) {
            outcome.err.clear();
        }
        EXPECT_EQ(outcome, alone.at(job.name)) << job.name;
        if (job.name == "collection") {
            EXPECT_EQ(packedNames(false), packedAlone);
        }
    }

    /// Starts a long job, runs all others beside it, and ends it.
    void expectBesideEachOther(const std::string& lasting, const std::function<bool()>& hasBegun) {
        Process process({"korvel", "-d", "all", lasting});
        while (!hasBegun()) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        for (const Job& job : jobs) {
            SCOPED_TRACE(lasting);
            expectAsAlone(start(job), job);
        }
        ::kill(process.pid(), SIGTERM);
        EXPECT_EQ(process.wait(), (Outcome{.status = 128 + SIGTERM, .out = "", .err = ""}));
    }

    static bool isArchived() {
        const std::string file = "/tmp/korvel/archive/syslib/runtime.log";
        return fs::exists(file) && fs::file_size(file) > 0;
    }

    static bool isSupervised() {
        const Words requests = Board::received("netfp_proxy");
        return std::any_of(requests.begin(), requests.end(), isHeartbeat);
    }

    static bool isHeartbeat(const std::string& request) { return request.size() == 40; }

    const Board board{{}};
    std::map<std::string, Outcome> alone;
    Words packedAlone;

private:
    int interfaces = 0;
};

TEST_F(JobPairsTest, AnyTwoShortJobsDoTheSameAsAlone) {
    for (auto first = jobs.begin(); first != jobs.end(); ++first) {
        for (auto second = first + 1; second != jobs.end(); ++second) {
            SCOPED_TRACE(first->name + " and " + second->name);
            const Run one = start(*first);
            const Run other = start(*second);

            expectAsAlone(one, *first);
            expectAsAlone(other, *second);
        }
    }
}

TEST_F(JobPairsTest, EveryJobDoesTheSameBesideTheArchiver) {
    expectBesideEachOther("archive", isArchived);
}

TEST_F(JobPairsTest, EveryJobDoesTheSameBesideTheSupervision) {
    expectBesideEachOther("supervision", isSupervised);
}

TEST_F(JobPairsTest, ArchiverAndSupervisionDoNotDisturbEachOther) {
    Process archive({"korvel", "archive"});
    expectBesideEachOther("supervision", [] { return isArchived() && isSupervised(); });
    ::kill(archive.pid(), SIGTERM);
    EXPECT_EQ(archive.wait(), (Outcome{.status = 128 + SIGTERM, .out = "", .err = ""}));
}

}  // namespace

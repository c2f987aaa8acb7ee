// Signals that interrupt the libraries at each of their system calls.

#include <filesystem>
#include <fstream>
#include <ostream>
#include <regex>
#include <string>

#include <gtest/gtest.h>
#include <sys/mman.h>

#include "HostBoard.hpp"
#include "Injection.hpp"
#include "TestFiles.hpp"

namespace {

constexpr const char* logName = "interrupted_log";
constexpr const char* logMemory = "/dev/shm/interrupted_log";

struct Interrupted {
    const char* name;
    const char* fault;      ///< in the format of strace
    const char* path = "";  ///< path of the file; empty for any
};

std::ostream& operator<<(std::ostream& stream, const Interrupted& interrupted) {
    return stream << interrupted.name;
}

class InterruptedCallTest : public testing::TestWithParam<Interrupted> {
protected:
    void SetUp() override {
        std::filesystem::create_directories(HostBoard::settingsDir);
        std::ofstream(HostBoard::secureFile) << "1\n";
    }
    void TearDown() override {
        std::filesystem::remove(HostBoard::secureFile);
        ::shm_unlink(HostBoard::ddrMemory);
        ::shm_unlink(logName);
    }
};

TEST_P(InterruptedCallTest, IsRepeatedWithoutLoss) {
    Outcome outcome = runInjected({.faults = {GetParam().fault}, .path = GetParam().path},
                                  {besideThisProgram("stand_in_probe"), logName});

    outcome.out = std::regex_replace(outcome.out, std::regex("[0-9-]+T[0-9:.]+Z"), "TIME");
    EXPECT_EQ(outcome, (Outcome{.status = 0,
                                .out = "TIME 6 Probe: one\n"
                                       "TIME 6 Probe: two\n"
                                       "secure error 0, secure 1\n"
                                       "translation error 0\n",
                                .err = ""}));
}

INSTANTIATE_TEST_SUITE_P(
    Calls, InterruptedCallTest,
    testing::Values(Interrupted{"OpeningTheLog", "openat:error=EINTR:when=1", logMemory},
                    Interrupted{"OpeningTheLogAnew", "openat:error=EINTR:when=1", "/proc/self/fd/3"},
                    Interrupted{"GivingTheLogItsLength", "fallocate:error=EINTR:when=1", logMemory},
                    Interrupted{"TakingTheLock", "flock:error=EINTR:when=1"},
                    Interrupted{"TakingTheLockToWrite", "flock:error=EINTR:when=3..4"},
                    Interrupted{"TakingTheLockToRead", "flock:error=EINTR:when=7..8"},
                    Interrupted{"OpeningASetting", "openat:error=EINTR:when=1", HostBoard::secureFile},
                    Interrupted{"ReadingASetting", "read:error=EINTR:when=1", HostBoard::secureFile},
                    Interrupted{"OpeningTheMemory", "openat:error=EINTR:when=1", "/dev/shm/board_ddr"},
                    Interrupted{"GivingTheMemoryItsLength", "ftruncate:error=EINTR:when=1"},
                    Interrupted{"FillingTheMemory", "fallocate:error=EINTR:when=1", "/dev/shm/board_ddr"}),
    [](const auto& row) { return row.param.name; });

}  // namespace

// The main function of test programs. A single test, as ctest runs it, runs in this process. Several tests
// run one after the other, each in a child process, and the board is restored after each. So no test depends
// on the settings, handlers, threads or files of an earlier one, in any order (--gtest_shuffle).

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "FreshBoard.hpp"
#include "RepeatHint.hpp"
#include "SelectedTests.hpp"

namespace {

/// Prints failures as GoogleTest does, and nothing about a test that passes.
class FailurePrinter : public testing::EmptyTestEventListener {
    void OnTestPartResult(const testing::TestPartResult& part) override {
        if (part.failed()) {
            std::printf("%s:%d: Failure\n%s\n", part.file_name(), part.line_number(), part.message());
            std::fflush(stdout);
        }
    }
};

[[noreturn]] void runHere(const std::string& test) {
    auto& listeners = testing::UnitTest::GetInstance()->listeners();
    delete listeners.Release(listeners.default_result_printer());
    listeners.Append(new FailurePrinter);
    GTEST_FLAG_SET(filter, test);
    GTEST_FLAG_SET(shuffle, false);
    std::exit(RUN_ALL_TESTS());
}

bool passesApart(const std::string& test) {
    std::printf("[ RUN      ] %s\n", test.c_str());
    std::fflush(stdout);
    const pid_t child = ::fork();
    if (child == 0) {
        runHere(test);
    }
    int status = -1;
    const bool passed = ::waitpid(child, &status, 0) == child && status == 0;
    std::printf("%s %s\n", passed ? "[       OK ]" : "[  FAILED  ]", test.c_str());
    return passed;
}

int runApart(const std::vector<std::string>& tests) {
    const FreshBoard board;
    const auto failures = std::ranges::count_if(tests, [&board](const std::string& test) {
        const bool passed = passesApart(test);
        board.restore();
        return !passed;
    });
    std::printf("%zu tests ran, %td failed\n", tests.size(), failures);
    return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}

/// Chooses the seed of a random order and prints it, so that the order can be repeated.
void chooseOrder() {
    if (GTEST_FLAG_GET(shuffle) && GTEST_FLAG_GET(random_seed) == 0) {
        constexpr int seeds = 99999;
        GTEST_FLAG_SET(random_seed, static_cast<int>(std::random_device()() % seeds) + 1);
        std::printf("In a random order: --gtest_random_seed=%d\n", GTEST_FLAG_GET(random_seed));
    }
}

}  // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): an exception ends the program, which then has failed
int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new RepeatHint);
    if (GTEST_FLAG_GET(list_tests) || !FreshBoard::isAtHand()) {
        return RUN_ALL_TESTS();
    }
    chooseOrder();
    const std::vector<std::string> tests = selectedTests();
    return tests.size() > 1 ? runApart(tests) : RUN_ALL_TESTS();
}

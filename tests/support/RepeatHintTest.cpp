// Each test fails on purpose in a child process and then checks the output of the child.

#include <cstdlib>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Process.hpp"
#include "ShellWords.hpp"
#include "TestFiles.hpp"

using testing::ContainsRegex;
using testing::HasSubstr;

namespace {

constexpr const char* failOnPurpose = "FAIL_ON_PURPOSE";

class RepeatHintTest : public testing::Test {
protected:
    static bool isChild() { return std::getenv(failOnPurpose) != nullptr; }

    /// The output of the failed tests that `filter` selects.
    static std::string printedByFailure(const std::string& filter) {
        return run({besideThisProgram("test_main_test"), "--gtest_filter=" + filter},
                   {.environment = {{failOnPurpose, "1"}}})
            .out;
    }
};

constexpr const char* commandOnTheHost =
    "To repeat this test:\n"
    "  [^ ]*/boardsim --bare -- [^ ]*/tests/test_main_test --gtest_filter=RepeatHintTest.";

}  // namespace

TEST_F(RepeatHintTest, NamesTheCommandLineOfATestThatFails) {
    ASSERT_FALSE(isChild());

    EXPECT_THAT(printedByFailure("RepeatHintTest.Names*"),
                ContainsRegex(commandOnTheHost + std::string("NamesTheCommandLineOfATestThatFails\n")));
}

TEST_F(RepeatHintTest, ListsTheCommandsThatTheTestRan) {
    if (isChild()) {
        run({"true", "it's", "two words", ""}, {.environment = {{"GREETING", "a b"}}});
        FAIL();
    }

    EXPECT_THAT(printedByFailure("RepeatHintTest.ListsTheCommandsThatTheTestRan"),
                HasSubstr("The test ran these commands, the latest at the end:\n"
                          "  GREETING='a b' true 'it'\\''s' 'two words' ''\n"));
}

TEST_F(RepeatHintTest, IsPrintedEvenIfSeveralTestsRun) {
    ASSERT_FALSE(isChild());

    const std::string printed = printedByFailure("RepeatHintTest.*:LeftBehindTest.*");

    EXPECT_THAT(printed, ContainsRegex(commandOnTheHost + std::string("NamesTheCommandLine")));
    EXPECT_THAT(printed, ContainsRegex(commandOnTheHost + std::string("IsPrintedEven")));
}

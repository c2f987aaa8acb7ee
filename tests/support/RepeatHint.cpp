#include "RepeatHint.hpp"

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "ShellWords.hpp"
#include "StartedCommands.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

/// The command line that starts this program on the host. The build writes it to a file beside each program
/// that runs on a board.
std::vector<std::string> commandOfThisProgram() {
    const fs::path program = fs::read_symlink("/proc/self/exe");
    const fs::path file = fs::path(program).replace_extension(".command");  // emulated programs have one
    return fs::exists(file) ? linesOfFile(file) : std::vector<std::string>{program};
}

}  // namespace

void RepeatHint::OnTestEnd(const testing::TestInfo& test) {
    if (!test.result()->Failed()) {
        return;
    }
    std::vector<std::string> command = commandOfThisProgram();
    command.push_back(std::string("--gtest_filter=") + test.test_suite_name() + "." + test.name());
    std::printf("To repeat this test:\n  %s\n", shellLine(command).c_str());
    const std::vector<std::string> started = startedCommands();
    if (!started.empty()) {
        std::printf("The test ran these commands, the latest at the end:\n");
    }
    for (const std::string& line : started) {
        std::printf("  %s\n", line.c_str());
    }
    std::fflush(stdout);
}

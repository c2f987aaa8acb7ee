// What a command on the board can do to the terminal that it shares with the host.

#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "Boardsim.hpp"
#include "Terminal.hpp"

namespace {

/// Runs a script of the host's shell on a terminal and returns the output of the terminal. In the script, $0
/// is boardsim.
std::string onTerminal(const std::string& script) {
    Terminal terminal({"bash", "-c", script, BOARDSIM_PROGRAM});
    const std::string shown = terminal.rest();
    EXPECT_EQ(terminal.wait(), 0);
    return shown;
}

/// The lines "WAY: REASON" whose reason is not `expected`.
std::string otherReasons(const std::string& lines, const std::string& expected) {
    std::istringstream text(lines);
    std::string others;
    for (std::string line; std::getline(text, line);) {
        others += line.ends_with(": " + expected) ? "" : line + "\n";
    }
    return others;
}

}  // namespace

TEST(BoardsimTerminalTest, TakesNoInputFromACommandInAnyBinaryInterface) {
    const std::string shown =
        onTerminal("$0 --bare -- /opt/korvel/tests/push_input; read -t 0 && echo 'somebody typed'; echo end");

    EXPECT_EQ(otherReasons(shown, "Operation not permitted"), "end\n");
}

TEST(BoardsimTerminalTest, TakesNoInputFromAPeer) {
    // Every process of the board has the filter of its first one.
    const std::string shown = onTerminal("$0 -- sh -c 'grep -h Seccomp: /proc/[0-9]*/status | sort -u'");

    EXPECT_EQ(shown, "Seccomp:\t2\n");
}

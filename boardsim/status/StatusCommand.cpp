#include "StatusCommand.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <iterator>
#include <utility>

#include <poll.h>

#include "BoardTraffic.hpp"
#include "HelpText.hpp"
#include "RunningBoard.hpp"
#include "StatusText.hpp"
#include "SystemCall.hpp"
#include "UsageError.hpp"

namespace Boardsim {
namespace {

constexpr std::size_t lastLines = 10;
constexpr int pauseMs = 100;  // between two polls of the logs

struct Watched {
    RunningBoard board;
    BoardTraffic traffic = {};

    std::vector<std::string> newLines() { return traffic.next(board); }
};

using Boards = std::vector<Watched>;

enum class Mode : std::uint8_t { once, follow, help, shortHelp };

Mode parseMode(const std::vector<std::string>& arguments) {
    Mode mode = Mode::once;
    for (const std::string& word : arguments) {
        if (word == "-f" || word == "--follow") {
            mode = Mode::follow;
        } else if (word == "-h" || word == "--help") {
            return word == "-h" ? Mode::shortHelp : Mode::help;
        } else {
            throw UsageError("status takes no option but --follow: " + word);
        }
    }
    return mode;
}

void printLast(const std::vector<std::string>& lines) {
    const std::size_t count = std::min(lines.size(), lastLines);
    std::cout << (count == 0 ? "" : "\n");
    for (const std::string& line :
         std::vector(lines.end() - static_cast<std::ptrdiff_t>(count), lines.end())) {
        std::cout << "  " << line << '\n';
    }
}

/// Waits until the board has ended, but at most this long. Returns true if it has ended.
bool hasEnded(const RunningBoard& board, int waitMs) {
    pollfd wait{board.endDescriptor(), POLLIN, 0};
    return Base::checked(Base::uninterrupted([&] { return ::poll(&wait, 1, waitMs); }), "poll") > 0;
}

Boards printAll() {
    Boards boards;
    const char* separator = "";
    for (RunningBoard& running : RunningBoard::all()) {
        const std::string text = statusText(running);
        if (!hasEnded(running, 0)) {
            boards.push_back({std::move(running)});
            std::cout << separator << text;
            printLast(boards.back().newLines());
            separator = "\n";
        }
    }
    return boards;
}

/// Prints new lines. With several boards, prints the board's name above its lines, as `tail` does with files.
class TrafficPrinter {
public:
    void print(Watched& watched, bool several) {
        for (const std::string& line : watched.newLines()) {
            if (several && std::exchange(latest, watched.board.pid()) != watched.board.pid()) {
                std::cout << "Board " << watched.board.pid() << ":\n";
            }
            std::cout << "  " << line << '\n';
        }
    }

private:
    pid_t latest = 0;
};

void follow(Boards boards) {
    const bool several = boards.size() > 1;
    TrafficPrinter printer;
    while (!boards.empty()) {
        hasEnded(boards.front().board, pauseMs);
        for (auto each = boards.begin(); each != boards.end();) {
            const bool ended = hasEnded(each->board, 0);  // first, so that the last lines are complete
            printer.print(*each, several);
            if (ended) {
                std::cout << "Board " << each->board.pid() << " has ended.\n";
            }
            each = ended ? boards.erase(each) : std::next(each);
        }
        std::cout << std::flush;
    }
}

}  // namespace

int runStatus(const std::vector<std::string>& arguments) {
    const Mode mode = parseMode(arguments);
    if (mode == Mode::help || mode == Mode::shortHelp) {
        std::cout << (mode == Mode::help ? helpText() : shortHelpText());
        return EXIT_SUCCESS;
    }
    Boards boards = printAll();
    if (boards.empty()) {
        std::cout << "No board is running.\n";
        return EXIT_FAILURE;
    }
    if (mode == Mode::follow) {
        std::cout << std::flush;
        follow(std::move(boards));
    }
    return EXIT_SUCCESS;
}

}  // namespace Boardsim

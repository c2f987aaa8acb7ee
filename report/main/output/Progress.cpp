#include "Progress.hpp"

#include <algorithm>
#include <iostream>
#include <utility>

#include <unistd.h>

#include "Terminal.hpp"
#include "Words.hpp"

namespace Report {

Progress::Progress(std::string what, std::size_t total)
    : name(std::move(what)), all(total), shown(isTerminal(STDERR_FILENO)) {
}

void Progress::advance() {
    ++done;
    const auto now = std::chrono::steady_clock::now();
    if (now - printed >= std::chrono::milliseconds(200)) {
        printed = now;
        print(grouped(done) + " of " + grouped(all) + " " + name);
    }
}

void Progress::clear() {
    print("");
}

/// Blanks erase the rest of the line, on each terminal.
void Progress::print(const std::string& text) {
    if (shown) {
        const std::size_t rest = width - std::min(width, text.size());
        std::cerr << '\r' << text << std::string(rest, ' ') << std::string(rest, '\b') << std::flush;
        width = text.size();
    }
}

}  // namespace Report

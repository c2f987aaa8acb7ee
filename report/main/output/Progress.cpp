#include "Progress.hpp"

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

void Progress::finish() {
    print("");
}

void Progress::print(const std::string& text) const {
    if (shown) {
        std::cerr << "\r\033[K" << text << std::flush;
    }
}

}  // namespace Report

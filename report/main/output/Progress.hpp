#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace Report {

/// Shows on standard error how far a long run is, if that is a terminal.
class Progress {
public:
    /// `what` names the things that are counted: "packages".
    Progress(std::string what, std::size_t total);

    void advance();

    /// Removes the line. Call it before anything else is printed.
    void clear();

private:
    void print(const std::string& text);

    std::string name;
    std::size_t all;
    std::size_t done = 0;
    bool shown;
    std::size_t width = 0;  ///< of the text on the line
    std::chrono::steady_clock::time_point printed;
};

}  // namespace Report

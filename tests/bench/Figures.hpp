#pragma once

#include <string>

/// One limit of what a command costs, and what was measured.
struct Figure {
    std::string name;
    double measured;
    double limit;
    std::string unit;
};

/// Prints a figure on a line of its own. True when it keeps its limit.
bool report(const Figure& figure);

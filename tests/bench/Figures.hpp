#pragma once

#include <string>

/// A measured cost of a command, and its limit.
struct Figure {
    std::string name;
    double measured;
    double limit;
    std::string unit;
};

/// Prints a figure on one line. Returns whether it is within its limit.
bool report(const Figure& figure);

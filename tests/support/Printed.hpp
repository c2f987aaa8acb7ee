#pragma once

#include <functional>
#include <ostream>
#include <string>

/// The output of a piece of work.
struct Printed {
    std::string out = {};
    std::string err = {};

    bool operator==(const Printed&) const = default;
};

/// Prints both texts unchanged, for the message of a failed comparison.
std::ostream& operator<<(std::ostream& stream, const Printed& printed);

/// Runs `work` and returns the output of it and of its children.
Printed printedBy(const std::function<void()>& work);

#pragma once

#include <functional>
#include <ostream>
#include <string>

/// What a piece of work printed.
struct Printed {
    std::string out = {};
    std::string err = {};

    bool operator==(const Printed&) const = default;
};

/// Both texts as they stand, for the message of a comparison that fails.
std::ostream& operator<<(std::ostream& stream, const Printed& printed);

/// Runs `work` and takes what it and its children print meanwhile.
Printed printedBy(const std::function<void()>& work);

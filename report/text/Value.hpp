#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>

namespace Report {

/// A number that a part holds. Beyond 64 bits it is std::monostate, and only the text tells it.
using Number = std::variant<std::monostate, std::int64_t, std::uint64_t, double>;

/// One line `NAME  NUMBER` of a part. The key of a value is part / title / name / occurrence.
struct Value {
    std::string part;
    std::string title;           ///< the heading above it; empty if there is none
    std::string name;            ///< of a part that is one number: the last component of the part's name
    std::size_t occurrence = 1;  ///< counts lines with the same part, title and name from 1
    Number number;
    std::string text;  ///< the number as it was written
};

}  // namespace Report

#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "Package.hpp"

namespace Report {

/// Lines of a part that are neither values nor log entries, and that only one of two packages has.
struct TextChange {
    std::size_t added = 0;
    std::size_t removed = 0;
    std::vector<std::string> firstAdded;  ///< bytes as they came; at most three lines
    std::vector<std::string> firstRemoved;

    bool empty() const { return added == 0 && removed == 0; }
};

/// The text of a part: of one member, or of several members with this name. The values are those of the text,
/// in its order.
struct PartText {
    std::vector<const Part*> members;
    std::vector<const Value*> values;
};

/// Compares the lines that hold no values. Neither the order of the lines nor blank lines count.
TextChange compareTexts(const PartText& before, const PartText& after, std::size_t maxLine);

/// Whether both have exactly the same bytes.
bool isSameText(const PartText& before, const PartText& after);

}  // namespace Report

#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "TextPattern.hpp"

namespace Report {

/// The part names that the `where` of a rule stands for. In a name, * stands for any characters but a slash,
/// and
/// ** for any characters.
class PartPattern {
public:
    explicit PartPattern(const std::vector<std::string>& globs);

    bool fits(std::string_view name) const;

private:
    bool everything = false;
    std::vector<std::string> names;  // without wildcards
    std::vector<TextPattern> patterns;
};

}  // namespace Report

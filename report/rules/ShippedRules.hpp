#pragma once

#include <span>
#include <string_view>

namespace Report {

/// A file of rules that is part of the program.
struct ShippedRules {
    std::string_view file;  ///< its name in report/rules
    std::string_view text;  ///< TOML
};

std::span<const ShippedRules> shippedRules();

}  // namespace Report

#pragma once

#include <string>
#include <string_view>

#include "Package.hpp"

namespace Report {

/// The name of a part for people. `prefix` ends in "/" and names the nested package; it is empty for the
/// outer one.
std::string fullName(std::string_view prefix, const Part& part);

/// The prefix for the parts of a nested package.
std::string nestedPrefix(std::string_view prefix, const Package& nested);

/// Whether a choice of the user, such as "mmi/sfn", "mmi/sfn/HeapStats" or "./mmi/sfn/HeapStats.log", selects
/// a part by its full name.
bool selects(std::string_view choice, std::string_view name);

/// Whether a choice selects any part of a package or of what is nested in it. `prefix` is that of the
/// package.
bool selectsAny(std::string_view choice, const Package& package, std::string_view prefix);

}  // namespace Report

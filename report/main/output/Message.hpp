#pragma once

#include <string_view>

namespace Report {

/// Prints "korvel-report: TEXT" on standard error. The text may hold bytes of a package or of a path.
void complain(std::string_view text);

}  // namespace Report

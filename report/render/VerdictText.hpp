#pragma once

#include <string>

#include "Package.hpp"

namespace Report {

/// What the verdict of a judged package means for its reader, in one or two sentences. Safe for a terminal.
std::string meaningOf(const Package& package);

}  // namespace Report

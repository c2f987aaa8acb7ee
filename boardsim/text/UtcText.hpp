#pragma once

#include <ctime>
#include <string>

namespace Boardsim {

/// As in 2026-11-21T10:15:02, without a zone so that callers can add fractions of a second.
std::string utcText(std::time_t moment);

}  // namespace Boardsim

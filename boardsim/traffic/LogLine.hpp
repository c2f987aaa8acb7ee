#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Boardsim {

/// The levels of the shared-memory logs.
enum class LogLevel : std::uint8_t { error, warning, information, debug };

struct LogLine {
    LogLevel level;
    std::string text;
};

using LogLines = std::vector<LogLine>;

}  // namespace Boardsim

#pragma once

#include <cstdlib>
#include <string_view>

namespace Report {

/// The value of an environment variable; empty if it is not set.
inline std::string_view environment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr ? std::string_view() : std::string_view(value);
}

}  // namespace Report

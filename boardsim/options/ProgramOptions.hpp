#pragma once

#include <span>
#include <string>
#include <string_view>

#include "Request.hpp"

namespace Boardsim {

/// An option that is not a key of a scenario.
struct ProgramOption {
    const char* name;
    std::string_view section;   ///< heading in the help text
    std::string_view argument;  ///< placeholder of the value in help; empty: an option without a value
    std::string_view help;
    /// Throws UsageError.
    void (*apply)(Request& request, const std::string& value);

    /// As on the command line. A name of one letter is a short option.
    std::string spelling() const {
        return (std::string_view(name).size() == 1 ? "-" : "--") + std::string(name);
    }
};

/// All of them, in the order of the help text.
std::span<const ProgramOption> programOptions();

}  // namespace Boardsim

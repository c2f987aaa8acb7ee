#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Scenario.hpp"

namespace Boardsim {

enum class KeyForm : std::uint8_t {
    toggle,  ///< an option without argument; true or false in a file
    single,  ///< one value; given again, the last one counts
    list,    ///< an option that may stand several times; an array in a file
};

/// One thing that can be said about a board, on the command line (--NAME VALUE) as in a scenario file
/// (NAME = VALUE).
struct ScenarioKey {
    std::string_view name;
    std::string_view section;  ///< of the help text
    KeyForm form;
    std::string_view argument;  ///< what help calls the value
    std::string_view help;
    /// Takes one value over ("true" or "false" for a toggle). Throws UsageError.
    void (*set)(Scenario& scenario, const std::string& value);
    /// The values that make set() say the same again; none for what a new scenario says anyway.
    std::vector<std::string> (*get)(const Scenario& scenario);
};

/// All keys, in the order of the help text.
std::span<const ScenarioKey> scenarioKeys();

/// The key of exactly this name, or null.
const ScenarioKey* findScenarioKey(std::string_view name);

}  // namespace Boardsim

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
    single,  ///< one value; the last one counts
    list,    ///< a repeatable option; an array in a file
};

/// One setting of a board, both an option (--NAME VALUE) and a key of a scenario file (NAME = VALUE).
struct ScenarioKey {
    std::string_view name;
    std::string_view section;  ///< heading in the help text
    KeyForm form;
    std::string_view argument;  ///< placeholder of the value in help
    std::string_view help;
    /// Applies one value ("true" or "false" for a toggle). Throws UsageError.
    void (*set)(Scenario& scenario, const std::string& value);
    /// The values for set() that give the same setting again. None if it has the default, unless help shows
    /// the default.
    std::vector<std::string> (*get)(const Scenario& scenario);
};

/// All keys, in the order of the help text.
std::span<const ScenarioKey> scenarioKeys();

/// The key with this name, or null.
const ScenarioKey* findScenarioKey(std::string_view name);

}  // namespace Boardsim

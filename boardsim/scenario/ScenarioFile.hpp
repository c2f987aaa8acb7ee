#pragma once

#include <string>

#include "Scenario.hpp"

namespace Boardsim {

/// Applies a scenario file (TOML) to `scenario`. Keys that are not in the file stay unchanged. A relative
/// path in the file is relative to the file's directory. Throws UsageError if the file cannot be read or is
/// invalid.
void loadScenario(const std::string& path, Scenario& scenario);

/// The same with the text of the file. `path` is the file's path.
void applyScenario(const std::string& text, const std::string& path, Scenario& scenario);

std::string scenarioText(const Scenario& scenario);

}  // namespace Boardsim

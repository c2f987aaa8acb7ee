#pragma once

#include <string>

#include "Scenario.hpp"

namespace Boardsim {

/// Applies a scenario file (TOML) to `scenario`; keys that it leaves out stay as they are. A relative
/// path in it is taken from the file's own folder. Throws UsageError where the file cannot be read or
/// says what makes no sense.
void loadScenario(const std::string& path, Scenario& scenario);

/// The same with the text of a file; `path` is where it was read.
void applyScenario(const std::string& text, const std::string& path, Scenario& scenario);

/// `scenario` as the text of a scenario file.
std::string scenarioText(const Scenario& scenario);

}  // namespace Boardsim

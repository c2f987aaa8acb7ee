// Scenario files of the simulated board.

#include "Scenario.hpp"

#include <string>

#include "FuzzTarget.hpp"
#include "ScenarioFile.hpp"
#include "UsageError.hpp"

namespace {

using Boardsim::Scenario;
using Fuzz::require;

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = "board.toml";
    Scenario scenario;
    try {
        Boardsim::applyScenario(std::string(Fuzz::textOf(data, size)), path, scenario);
    } catch (const Boardsim::UsageError& refusal) {
        require(std::string_view(refusal.what()).starts_with(path + ":"), "a refusal names the file");
        return 0;
    }
    // The first process of the sandbox reads this text again.
    const std::string text = scenarioText(scenario);
    Scenario again;
    Boardsim::applyScenario(text, path, again);
    require(scenarioText(again) == text, "a scenario is read as it was written");
    return 0;
}

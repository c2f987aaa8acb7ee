#include "CommandLine.hpp"

#include <string_view>
#include <utility>

#include <getopt.h>

#include "HelpText.hpp"
#include "ScenarioFile.hpp"
#include "ScenarioKeys.hpp"
#include "UsageError.hpp"

namespace Boardsim {
namespace {

/// What getopt_long() returns for the options that are not keys of a scenario. A key's value is firstKey plus
/// its place in the table. It lies beyond all letters, because getopt_long() returns a short option's letter.
enum OptionValue : int { help = 1, scenarioFile, shortHelp = 'h', firstKey = 256 };

std::vector<option> optionTable() {
    std::vector<option> table{{"help", no_argument, nullptr, help},
                              {"scenario", required_argument, nullptr, scenarioFile}};
    int value = firstKey;
    for (const ScenarioKey& key : scenarioKeys()) {
        const int argument = key.form == KeyForm::toggle ? no_argument : required_argument;
        table.push_back({key.name.data(), argument, nullptr, value++});  // the names are literals
    }
    table.push_back({nullptr, 0, nullptr, 0});
    return table;
}

/// The option that getopt_long() rejected; `value` is ':' if its argument is missing. optopt holds the letter
/// of a short option. Any other option is the last word that getopt_long() read.
std::string refusedOption(int value, const char* lastWord) {
    const bool letter = value == '?' && optopt >= ' ';
    const std::string name = letter ? std::string("-") + static_cast<char>(optopt) : lastWord;
    return (value == ':' ? "missing value: " : "unknown option: ") + name;
}

void applyOption(const ScenarioKey& key, const std::string& value, Scenario& scenario) {
    try {
        key.set(scenario, value);
    } catch (const UsageError& error) {
        throw UsageError("--" + std::string(key.name) + ": " + error.what());
    }
}

}  // namespace

Request parseCommandLine(int argc, char** argv) {
    const std::vector<option> table = optionTable();
    Request request;
    std::vector<std::pair<const ScenarioKey*, std::string>> settings;
    opterr = 0;
    for (int value = 0; (value = ::getopt_long(argc, argv, "+:h", table.data(), nullptr)) != -1;) {
        if (value == ':' || value == '?') {
            throw UsageError(refusedOption(value, argv[optind - 1]));
        }
        const std::string argument = optarg == nullptr ? "true" : optarg;
        if (value == help || value == shortHelp) {
            request.help = value == help ? helpText : shortHelpText;
        } else if (value == scenarioFile) {
            loadScenario(argument, request.scenario);
        } else {
            settings.emplace_back(&scenarioKeys()[static_cast<std::size_t>(value - firstKey)], argument);
        }
    }
    for (const auto& [key, value] : settings) {  // last, because options override the scenario file
        applyOption(*key, value, request.scenario);
    }
    request.command.assign(argv + optind, argv + argc);
    return request;
}

}  // namespace Boardsim

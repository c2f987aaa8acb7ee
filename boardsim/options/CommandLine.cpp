#include "CommandLine.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include <getopt.h>

#include "ProgramOptions.hpp"
#include "ScenarioKeys.hpp"
#include "UsageError.hpp"

namespace Boardsim {
namespace {

/// What getopt_long() returns for an option is its place in optionTable() plus this number. It lies beyond
/// all letters, because getopt_long() returns a short option's letter.
constexpr int firstOption = 256;

/// The program's own options, then the keys of a scenario.
std::vector<option> optionTable() {
    std::vector<option> table;
    const auto add = [&](const char* name, bool toggle) {
        const int value = firstOption + static_cast<int>(table.size());
        table.push_back({name, toggle ? no_argument : required_argument, nullptr, value});
    };
    for (const ProgramOption& each : programOptions()) {
        add(each.name, each.argument.empty());
    }
    for (const ScenarioKey& key : scenarioKeys()) {
        add(key.name.data(), key.form == KeyForm::toggle);  // the names are literals
    }
    table.push_back({nullptr, 0, nullptr, 0});
    return table;
}

/// The place of an option in optionTable().
std::size_t placeOf(int value) {
    if (value >= firstOption) {
        return static_cast<std::size_t>(value - firstOption);
    }
    const auto isLetter = [&](const ProgramOption& each) {
        return each.spelling() == std::string("-") + static_cast<char>(value);
    };
    return static_cast<std::size_t>(std::ranges::find_if(programOptions(), isLetter) -
                                    programOptions().begin());
}

/// The option that getopt_long() rejected; `value` is ':' if its argument is missing. optopt holds the letter
/// of a short option. Any other option is the last word that getopt_long() read.
std::string refusedOption(int value, const char* lastWord) {
    const bool letter = value == '?' && optopt >= ' ' && optopt < firstOption;
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

/// Refuses options for SSH that do not fit together.
void checkSsh(const Request& request) {
    const SshAccess& ssh = request.ssh;
    const std::string command = request.command.empty() ? "" : request.command.front();
    const std::array rules{
        std::pair{ssh.on && !request.command.empty(), "--ssh takes no command: " + command},
        std::pair{ssh.on && !ssh.authorizedKeys, std::string("--ssh needs --authorized-keys")},
        std::pair{!ssh.on && ssh.authorizedKeys.has_value(), std::string("--authorized-keys needs --ssh")},
        std::pair{!ssh.on && ssh.hostKey.has_value(), std::string("--host-key needs --ssh")},
    };
    for (const auto& [broken, reason] : rules) {
        if (broken) {
            throw UsageError(reason);
        }
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
        const std::size_t place = placeOf(value);
        if (place < programOptions().size()) {
            programOptions()[place].apply(request, argument);
        } else {
            settings.emplace_back(&scenarioKeys()[place - programOptions().size()], argument);
        }
    }
    for (const auto& [key, value] : settings) {  // last, because options override the scenario file
        applyOption(*key, value, request.scenario);
    }
    request.command.assign(argv + optind, argv + argc);
    checkSsh(request);
    return request;
}

}  // namespace Boardsim

#include "CommandLine.hpp"

#include <iomanip>
#include <sstream>
#include <string_view>
#include <utility>

#include <getopt.h>

#include "PeerCatalog.hpp"
#include "ScenarioFile.hpp"
#include "ScenarioKeys.hpp"
#include "UsageError.hpp"

namespace {

/// What getopt_long() returns for the options that are no keys of a scenario; a key's own value is its
/// place in the table, from firstKey on.
enum OptionValue : int { help = 1, scenarioFile, firstKey };

constexpr int nameWidth = 26;

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

/// What getopt_long() refused: with ':' for lack of an argument. It tells a letter behind a single dash in
/// optopt, anything else is the word that it read last.
std::string refusedOption(int value, const char* lastWord) {
    const bool letter = value == '?' && optopt >= ' ';
    const std::string name = letter ? std::string("-") + static_cast<char>(optopt) : lastWord;
    return (value == ':' ? "a value is missing: " : "unknown option: ") + name;
}

void applyOption(const ScenarioKey& key, const std::string& value, Scenario& scenario) {
    try {
        key.set(scenario, value);
    } catch (const UsageError& error) {
        throw UsageError("--" + std::string(key.name) + ": " + error.what());
    }
}

void addHelpLine(std::ostream& out, const std::string& option, std::string_view text) {
    out << "  " << std::left << std::setw(nameWidth) << option << ' ' << text << '\n';
}

std::string faultNames(const PeerEntry& peer) {
    std::string names;
    for (const FaultGroup& group : peer.faults) {
        for (const FaultKind& kind : group.kinds()) {
            names +=
                ' ' + std::string(group.prefix) + std::string(kind.name) + (kind.takesNumber ? ":N" : "");
        }
    }
    return names.empty() ? " -" : names;
}

}  // namespace

Request parseCommandLine(int argc, char** argv) {
    const std::vector<option> table = optionTable();
    Request request;
    std::vector<std::pair<const ScenarioKey*, std::string>> settings;
    opterr = 0;
    for (int value = 0; (value = ::getopt_long(argc, argv, "+:", table.data(), nullptr)) != -1;) {
        if (value == ':' || value == '?') {
            throw UsageError(refusedOption(value, argv[optind - 1]));
        }
        const std::string argument = optarg == nullptr ? "true" : optarg;
        if (value == help) {
            request.help = true;
        } else if (value == scenarioFile) {
            loadScenario(argument, request.scenario);
        } else {
            settings.emplace_back(&scenarioKeys()[static_cast<std::size_t>(value - firstKey)], argument);
        }
    }
    for (const auto& [key, value] : settings) {  // last, for they override the scenario file
        applyOption(*key, value, request.scenario);
    }
    request.command.assign(argv + optind, argv + argc);
    return request;
}

std::string helpText() {
    std::ostringstream out;
    out << "boardsim [options] [--] [COMMAND...]\n"
           "Runs COMMAND (a shell by default) on a simulated board and ends with its exit status.\n\n";
    for (const ScenarioKey& key : scenarioKeys()) {
        addHelpLine(out, "--" + std::string(key.name) + " " + std::string(key.argument), key.help);
    }
    addHelpLine(out, "--scenario FILE", "the same as keys of a TOML file; options override it");
    addHelpLine(out, "--help", "this text");
    out << "\nPeers, and the faults that each knows:\n";
    for (const PeerEntry& peer : peerCatalog()) {
        out << "  " << std::left << std::setw(16) << peer.name << faultNames(peer) << '\n';
    }
    return out.str();
}

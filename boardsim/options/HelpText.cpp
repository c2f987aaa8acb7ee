#include "HelpText.hpp"

#include <algorithm>
#include <set>
#include <sstream>
#include <string_view>
#include <vector>

#include "PeerCatalog.hpp"
#include "ProgramOptions.hpp"
#include "Scenario.hpp"
#include "ScenarioKeys.hpp"

namespace Boardsim {
namespace {

constexpr std::string_view usage =
    R"(Usage: boardsim [OPTION...] [--] [COMMAND...]
       boardsim status [-f | --follow]

Runs COMMAND on a simulated base-station board; without COMMAND, a shell.
)";

constexpr std::string_view introduction = R"(
The board has real processes on the board's own paths and ports. It runs in a
sandbox, and leaves nothing on the host.

status lists the running boards and the state of their peers. It then prints
the last messages that the peers received and answered. With --follow it goes
on with each new message, until Ctrl-C or until the last board ends. It works
on the host and on the board.
)";

constexpr std::string_view conclusion = R"(
Examples:
  boardsim
      A shell on a board. Its search path has the programs beside boardsim.
  boardsim --deployment iwf -- korvel getport eth1
      One command, on a board with only the IWF dispatcher.
  boardsim --fault netfp_master=slow:300 --fault iwf_dispatcher=endless
      A board with two faulty peers.
  boardsim --traffic leak:60
      A board on which allocations soon fail.
  ssh -o ProxyCommand='boardsim --ssh --authorized-keys FILE' root@board
      A login by SSH. Each connection has a new board.
  boardsim --scenario FILE
      The same board from a file. Its keys are the names of the options:
          fault = ["netfp_master=slow:300", "iwf_dispatcher=endless"]

Exit status:
  that of COMMAND       if COMMAND ran to its end
  128 + N               if signal N ended COMMAND
  127, 126              if COMMAND was not found, or could not be run
  2                     if the command line or the scenario is invalid
  3                     if no board or no SSH server could be started
  that of the server    with --ssh
  1                     from status, if no board is running

See also: boardsim(1), and docs/boardsim.md in the documentation of Korvel.
)";

constexpr std::string_view shortConclusion = R"(
boardsim --help also lists the peers, their faults and the exit statuses.
boardsim(1) is the manual page.
)";

constexpr std::size_t columns = 80;
constexpr std::size_t helpColumn = 24;  // where the second column begins

/// `text` broken between words, so that no line goes beyond the last column. Its first line goes on at
/// `column`; all others begin at `indent`.
std::string broken(const std::string& text, std::size_t column, std::size_t indent) {
    std::istringstream words(text);
    std::string lines;
    std::string gap;
    for (std::string word; words >> word; gap = " ") {
        if (!gap.empty() && column + gap.size() + word.size() > columns) {
            gap = "\n" + std::string(indent, ' ');
            column = indent;
        } else {
            column += gap.size();
        }
        lines += gap + word;
        column += word.size();
    }
    return lines + "\n";
}

/// One row of a list: a name and its help, which begins on the next line if the name is long.
std::string row(const std::string& name, const std::string& help) {
    std::string text = "  " + name;
    const bool fits = text.size() + 2 <= helpColumn;
    text += fits ? "" : "\n";
    text.append(helpColumn - (fits ? text.size() : 0), ' ');
    return text + broken(help, helpColumn, helpColumn);
}

std::string heading(std::string_view title) {
    return "\n" + std::string(title) + ":\n";
}

/// The help of an option, with its default.
std::string optionHelp(const ScenarioKey& key) {
    const std::vector<std::string> values = key.get({});
    return std::string(key.help) + (values.empty() ? "" : " (default: " + values.front() + ")");
}

std::string options() {
    std::string text;
    std::string_view section;
    for (const ScenarioKey& key : scenarioKeys()) {
        text += key.section == section ? "" : heading(key.section);
        section = key.section;
        const std::string argument = key.argument.empty() ? "" : " " + std::string(key.argument);
        text += row("--" + std::string(key.name) + argument, optionHelp(key));
    }
    for (const ProgramOption& each : programOptions()) {
        text += each.section == section ? "" : heading(each.section);
        section = each.section;
        const std::string argument = each.argument.empty() ? "" : " " + std::string(each.argument);
        text += row(each.spelling() + argument, std::string(each.help));
    }
    return text;
}

std::string peers() {
    std::string text = heading("Peers (each is a process with this name)");
    for (const PeerEntry& peer : peerCatalog()) {
        text += row(std::string(peer.name), std::string(peer.help));
    }
    return text;
}

std::string profiles() {
    std::string text = heading("Profiles of --traffic");
    for (const TrafficProfileName& profile : trafficProfiles()) {
        text += row(std::string(profile.name), std::string(profile.help));
    }
    return text;
}

/// The peers that have faults of this topic, as on the command line: "PEER=FAULT PEER=dump-FAULT".
std::string peersWithFaults(const FaultTopic& topic) {
    std::string text;
    for (const PeerEntry& peer : peerCatalog()) {
        for (const FaultGroup& group : peer.faults) {
            if (group.topic == &topic) {
                text += std::string(peer.name) + "=" + std::string(group.prefix) + "FAULT ";
            }
        }
    }
    return text;
}

std::string faultRows(const FaultTopic& topic) {
    std::string text = heading("Faults of " + std::string(topic.title));
    text += "  " + broken(peersWithFaults(topic), 2, 2);
    for (const FaultKind& kind : topic.kinds()) {
        text += row("  " + kind.form(), std::string(kind.help));
    }
    return text;
}

std::string faults() {
    std::string text;
    std::set<const FaultTopic*> told;
    for (const PeerEntry& peer : peerCatalog()) {
        for (const FaultGroup& group : peer.faults) {
            text += told.insert(group.topic).second ? faultRows(*group.topic) : "";
        }
    }
    return text;
}

}  // namespace

std::string helpText() {
    return std::string(usage) + std::string(introduction) + options() + profiles() + peers() + faults() +
           std::string(conclusion);
}

std::string shortHelpText() {
    return std::string(usage) + options() + std::string(shortConclusion);
}

}  // namespace Boardsim

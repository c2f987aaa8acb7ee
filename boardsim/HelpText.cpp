#include "HelpText.hpp"

#include <algorithm>
#include <set>
#include <sstream>
#include <string_view>
#include <vector>

#include "PeerCatalog.hpp"
#include "Scenario.hpp"
#include "ScenarioKeys.hpp"

namespace {

constexpr std::string_view introduction =
    R"(Usage: boardsim [OPTION...] [--] [COMMAND...]
       boardsim status [-f | --follow]

Runs COMMAND, or a shell, on a simulated base-station board: real processes on
the board's own paths and ports, in a sandbox that leaves nothing on the host.

status tells what boards are running, what their peers are doing and what was
received and answered last; with --follow, also what is from then on, until
Ctrl-C or the last board's end. It works on the host and on the board itself.
)";

constexpr std::string_view conclusion = R"(
Examples:
  boardsim
      A shell on a board. The programs beside boardsim are on its search path.
  boardsim --deployment iwf -- korvel getport eth1
      One command on a board with the IWF dispatcher alone.
  boardsim --fault netfp_master=slow:300 --fault iwf_dispatcher=endless
      A board on which two peers misbehave.
  boardsim --scenario FILE
      The same from a file, with the options' names as keys:
          fault = ["netfp_master=slow:300", "iwf_dispatcher=endless"]

Exit status: that of COMMAND; 128 + N where signal N ended it; 127 where it is
not found, 126 where it cannot be run. 2 for a command line or a scenario that
makes no sense, 3 where no board can be had. status: 1 where no board runs.

Read on: boardsim(1); docs/boardsim.md in the source.
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

/// One row of a list: a name, and behind it, or below it where it is long, what it stands for.
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

/// What an option stands for, with what holds where it is not given.
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
    text += heading("Other options");
    text += row("--scenario FILE",
                "a TOML file that says all this, with the options' names as keys; options override it, "
                "--without and --fault add to it");
    return text + row("--help", "this text");
}

std::string peers() {
    std::string text = heading("Peers, each a process under its own name");
    for (const PeerEntry& peer : peerCatalog()) {
        text += row(std::string(peer.name), std::string(peer.help));
    }
    return text;
}

/// The peers that know faults of this topic, as they stand on the command line: "PEER=FAULT PEER=dump-FAULT".
std::string bearers(const FaultTopic& topic) {
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
    text += "  " + broken(bearers(topic), 2, 2);
    for (const FaultKind& kind : topic.kinds()) {
        const std::string number = kind.takesNumber() ? ":" + std::string(kind.number) : "";
        text += row("  " + std::string(kind.name) + number, std::string(kind.help));
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
    return std::string(introduction) + options() + peers() + faults() + std::string(conclusion);
}

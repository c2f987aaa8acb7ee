#include "ProcessListing.hpp"

#include <algorithm>
#include <array>
#include <utility>

#include "Content.hpp"
#include "PartTable.hpp"

namespace Report {
namespace {

constexpr std::string_view columnBlanks = " \t\r";
constexpr std::array<std::string_view, 4> shells{"sh", "bash", "dash", "ash"};
constexpr std::array<std::string_view, 5> interpreters{"sh", "bash", "python", "python3", "env"};

/// The columns of a listing: the last one is the command line.
struct Columns {
    std::size_t count = 0;
    std::size_t state = std::string_view::npos;  // index of the column, if there is one
};

std::string_view cutColumn(std::string_view& line) {
    line.remove_prefix(std::min(line.find_first_not_of(columnBlanks), line.size()));
    const std::string_view column = line.substr(0, line.find_first_of(columnBlanks));
    line.remove_prefix(column.size());
    return column;
}

/// No columns if the line is not the heading of a listing.
Columns columnsOf(std::string_view heading) {
    Columns columns;
    bool hasPid = false;
    std::string_view last;
    for (std::string_view column = cutColumn(heading); !column.empty(); column = cutColumn(heading)) {
        hasPid = hasPid || column == "PID";
        columns.state = column == "STAT" || column == "S" ? columns.count : columns.state;
        ++columns.count;
        last = column;
    }
    return hasPid && (last == "COMMAND" || last == "CMD") ? columns : Columns{};
}

bool isNameCharacter(char character) {
    return character == '_' || (character >= '0' && character <= '9') ||
           (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

bool containsWord(std::string_view text, std::string_view word) {
    for (std::size_t at = text.find(word); at != std::string_view::npos; at = text.find(word, at + 1)) {
        const std::size_t end = at + word.size();
        if ((at == 0 || !isNameCharacter(text[at - 1])) &&
            (end == text.size() || !isNameCharacter(text[end]))) {
            return true;
        }
    }
    return false;
}

std::string_view baseName(std::string_view path) {
    path = path.substr(path.rfind('/') + 1);
    const auto isMark = [](char mark) { return mark == '[' || mark == ']' || mark == ':' || mark == '-'; };
    while (!path.empty() && isMark(path.front())) {
        path.remove_prefix(1);
    }
    while (!path.empty() && isMark(path.back())) {
        path.remove_suffix(1);
    }
    return path;
}

/// Whether the command line runs a program or script of this name.
bool runs(std::string_view command, std::string_view process) {
    const std::string_view program = baseName(cutColumn(command));
    if (program == process) {
        return true;
    }
    return std::ranges::find(interpreters, program) != interpreters.end() &&
           baseName(cutColumn(command)) == process;
}

/// The command line up to the commands of a shell, such as "init sh -c 'kill $(pidof NAME)'". A process that
/// these commands start has a line of its own.
std::string_view withoutShellCommands(std::string_view command) {
    std::string_view rest = command;
    for (std::string_view word = cutColumn(rest); !word.empty(); word = cutColumn(rest)) {
        std::string_view next = rest;
        if (std::ranges::find(shells, baseName(word)) != shells.end() && cutColumn(next) == "-c") {
            return command.substr(0, command.size() - rest.size());
        }
    }
    return command;
}

}  // namespace

ProcessListing::ProcessListing(const Package& package) {
    for (const Part& part : package.parts) {
        const bool usable = part.state == State::present && hasWholeText(part);
        if (usable && placeOf(part.name).collector == Collector::linuxLogs && parse(part)) {
            source = &part;
            return;
        }
    }
}

bool ProcessListing::parse(const Part& part) {
    const std::string text = evidenceTextOf(part);
    const std::size_t end = text.find('\n');
    const Columns columns = columnsOf(std::string_view(text).substr(0, end));
    if (columns.count == 0 || text.back() != '\n') {
        return false;
    }
    heading = text.substr(0, end);
    std::string_view rest = std::string_view(text).substr(end + 1);
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(line.size() + 1);
        std::string_view command = line;
        Row row{.line = std::string(line)};
        for (std::size_t index = 0; index + 1 < columns.count; ++index) {
            const std::string_view column = cutColumn(command);
            row.defunct = row.defunct || (index == columns.state && column.starts_with('Z'));
        }
        command.remove_prefix(std::min(command.find_first_not_of(columnBlanks), command.size()));
        row.command = line.size() - command.size();
        row.defunct = row.defunct || command.find("<defunct>") != std::string_view::npos;
        rows.push_back(std::move(row));
    }
    return true;
}

const ProcessListing::Row* ProcessListing::find(std::string_view process, Presence& presence) const {
    const Row* found = nullptr;
    presence = source == nullptr ? Presence::unknown : Presence::absent;
    for (const Row& row : rows) {
        const auto command = withoutShellCommands(std::string_view(row.line).substr(row.command));
        if (!containsWord(command, process)) {
            continue;
        }
        const Presence here = !runs(command, process) ? Presence::mentioned
                              : row.defunct           ? Presence::defunct
                                                      : Presence::running;
        if (here < presence) {
            presence = here;
            found = &row;
        }
    }
    return found;
}

Presence ProcessListing::presenceOf(std::string_view process) const {
    Presence presence = Presence::unknown;
    find(process, presence);
    return presence;
}

Evidence ProcessListing::evidenceFor(std::string_view process) const {
    Presence presence = Presence::unknown;
    const Row* const row = find(process, presence);
    const std::string name = source == nullptr ? std::string() : source->name;
    if (row != nullptr && presence != Presence::mentioned) {
        return {name, row->line};
    }
    return {name, "no process " + std::string(process) + " among " + std::to_string(rows.size())};
}

}  // namespace Report

#include <algorithm>
#include <array>
#include <cstddef>
#include <exception>
#include <optional>
#include <ostream>
#include <stdexcept>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include "CommandLine.hpp"
#include "Commands.hpp"
#include "ExitStatus.hpp"
#include "Message.hpp"
#include "Output.hpp"
#include "Packages.hpp"
#include "Terminal.hpp"

namespace Report {
namespace {

// In the order of the enumeration.
constexpr std::array commands{check,       show,    html, json,  diff,        clean,
                              restoreFile, metrics, add,  trend, exportTables};

int troubleOf(std::optional<Command> command) {
    return command == Command::diff ? exitTroubleOfDiff : exitTrouble;
}

void print(const std::string& text) {
    Output output({});
    output.write([&](std::ostream& out, const TextStyle&) { out << text; });
    output.finish();
}

int runCommand(const CommandLine& commandLine) {
    if (commandLine.text) {
        print(*commandLine.text);
        return 0;
    }
    const std::vector<std::string>& files = commandLine.arguments.files;
    const bool readsText = commandLine.command == Command::restore;  // it may be typed in
    if (!readsText && std::ranges::find(files, "-") != files.end() && isTerminal(STDIN_FILENO)) {
        throw std::runtime_error("standard input is a terminal");
    }
    if (commandLine.command != Command::clean && commandLine.command != Command::restore) {
        checkOutput(commandLine.arguments);
    }
    if (commandLine.arguments.explain) {
        return explain(commandLine.arguments, *commandLine.arguments.explain);
    }
    return commands.at(static_cast<std::size_t>(*commandLine.command))(commandLine.arguments);
}

int runGuarded(const CommandLine& commandLine) {
    try {
        return runCommand(commandLine);
    } catch (const std::exception& error) {
        complain(error.what());
        return troubleOf(commandLine.command);
    }
}

int run(int argc, const char* const* argv) {
    try {
        return runGuarded(parseCommandLine(argc, argv));
    } catch (const UsageError& error) {
        const std::string subcommand = error.command ? " " + std::string(nameOf(*error.command)) : "";
        complain(std::string(error.what()) + "\nTry 'korvel-report" + subcommand + " --help'.");
        return troubleOf(error.command);
    }
}

/// Opens what is closed of the standard descriptors, so that no file gets their numbers. Writes to them still
/// fail.
void occupyStandardDescriptors() {
    int descriptor = 0;
    do {
        descriptor = ::open("/dev/null", O_RDONLY);
    } while (descriptor >= 0 && descriptor <= STDERR_FILENO);
    ::close(descriptor);
}

}  // namespace
}  // namespace Report

int main(int argc, char** argv) {
    Report::occupyStandardDescriptors();
    return Report::run(argc, argv);
}

#include "CollectionFixture.hpp"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <thread>
#include <utility>

#include "PeerFaults.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;
using Boardsim::Board;
using Boardsim::parsePeerFault;
using Boardsim::Scenario;

namespace {

constexpr const char* ownCommands = "/tmp/commands";

Surroundings inEnglish(Surroundings surroundings) {
    surroundings.environment.insert({"LC_ALL", "C"});
    return surroundings;
}

std::string textOfHex(const std::string& hex) {
    constexpr int base = 16;
    std::string text;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        text += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, base));
    }
    return text;
}

}  // namespace

void CollectionFixture::startBoard(const Scenario& scenario) {
    running.reset();  // one at a time
    running = std::make_unique<Board>(scenario);
}

void CollectionFixture::startBoardWithFaults(const Words& faults) {
    Scenario scenario;
    for (const std::string& fault : faults) {
        scenario.faults.push_back(parsePeerFault(fault));
    }
    startBoard(scenario);
}

void CollectionFixture::startBoardWithout(const Words& peers) {
    Scenario scenario;
    scenario.without.insert(peers.begin(), peers.end());
    startBoard(scenario);
}

Outcome CollectionFixture::collect(const Words& arguments, const Surroundings& surroundings) {
    return korvel(arguments, inEnglish(surroundings));
}

Outcome CollectionFixture::collectInjected(const Injection& injection, const Words& arguments) {
    Words command{"korvel"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return runInjected(injection, command, inEnglish({}));
}

std::unique_ptr<Process> CollectionFixture::startCollection(const Words& arguments,
                                                            Surroundings surroundings) {
    Words command{"korvel"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    // The leak detector stops the process at its end. It may hang if signals keep arriving.
    surroundings.environment.insert({"ASAN_OPTIONS", "detect_leaks=0"});
    return std::make_unique<Process>(command, inEnglish(std::move(surroundings)));
}

Files CollectionFixture::workFiles() {
    Files files;
    for (const std::string& path : filesBelow(workDir)) {
        files[path] = contentOfFile(std::string(workDir) + "/" + path);
    }
    return files;
}

Words CollectionFixture::requestsTo(const std::string& dispatcher) {
    Words requests;
    for (const std::string& hex : Board::received(dispatcher)) {
        requests.push_back(textOfHex(hex));
    }
    return requests;
}

void CollectionFixture::awaitRequestTo(const std::string& dispatcher) {
    while (Board::received(dispatcher).empty()) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

std::string CollectionFixture::searchPath() {
    const char* const path = std::getenv("PATH");
    return path == nullptr ? "" : path;
}

Surroundings CollectionFixture::withCommand(const std::string& name, const std::string& script) {
    const fs::path path = fs::path(ownCommands) / name;
    writeFile(path, "#!/bin/sh\n" + script);
    fs::permissions(path, fs::perms::owner_all);
    Surroundings surroundings;
    surroundings.environment["PATH"] = std::string(ownCommands) + ":" + searchPath();
    return surroundings;
}

std::string CollectionFixture::verboseStart(const std::string& selection, const Words& skippedCollectors) {
    // The empty line comes from a record for the system log, because the board isolates its cores.
    std::string text = "Verbose mode enabled.\n" + selection + "\nDetected LogCollection keywords.\n";
    for (const std::string& collector : skippedCollectors) {
        text.append("Creation of LogCollector of type (")
            .append(collector)
            .append(") skipped - no options specified\n");
    }
    return text;
}

Outcome success(std::string out, std::string err) {
    return {0, std::move(out), std::move(err)};
}

Outcome failure(std::string out, std::string err) {
    return {1, std::move(out), std::move(err)};
}

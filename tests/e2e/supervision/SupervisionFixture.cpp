#include "SupervisionFixture.hpp"

#include <algorithm>
#include <chrono>
#include <thread>

#include <syslog.h>

#include "BoardPaths.hpp"
#include "LogEntries.hpp"
#include "PeerFaults.hpp"
#include "TestFiles.hpp"

using Boardsim::Board;
using Boardsim::parsePeerFault;
using Boardsim::Scenario;

namespace {

Words commandLine(const Words& options) {
    Words words{"korvel"};
    words.insert(words.end(), options.begin(), options.end());
    words.emplace_back("supervision");
    return words;
}

std::string bytesOfHex(const std::string& hex) {
    constexpr int base = 16;
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        bytes += static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, base));
    }
    return bytes;
}

/// "<14>Nov 21 08:37:07 korvel: TEXT" as "<14>korvel: TEXT".
std::string withoutTime(std::string record) {
    constexpr std::size_t lengthOfTime = sizeof "Nov 21 08:37:07 " - 1;
    return record.erase(record.find('>') + 1, lengthOfTime);
}

}  // namespace

Record error(const std::string& text) {
    return {"0 Supervision: " + text, "<11>korvel: " + text};
}

Record information(const std::string& text) {
    return {"2 Supervision: " + text, "<14>korvel: " + text};
}

Record started(const std::string& dispatchers) {
    return information("Starting supervision of dispatcher " + dispatchers + " and netfp_proxy");
}

void SupervisionFixture::startBoard(const Scenario& scenario) {
    running.reset();  // one at a time
    running = std::make_unique<Board>(scenario);
}

void SupervisionFixture::startBoardWithFaults(const Words& faults) {
    Scenario scenario;
    for (const std::string& fault : faults) {
        scenario.faults.push_back(parsePeerFault(fault));
    }
    startBoard(scenario);
}

void SupervisionFixture::setStatus(const std::string& peer, unsigned status) {
    writeFile(Boardsim::BoardPaths::heartbeatFile(peer), std::to_string(status) + "\n");
}

Outcome SupervisionFixture::supervise(const Words& options, const Surroundings& surroundings) {
    return run(commandLine(options), surroundings);
}

std::unique_ptr<Process> SupervisionFixture::startSupervision(const Words& options) {
    return std::make_unique<Process>(commandLine(options));
}

Words SupervisionFixture::requestsTo(const std::string& peer) {
    Words requests;
    for (const std::string& hex : Board::received(peer)) {
        requests.push_back(bytesOfHex(hex));
    }
    return requests;
}

void SupervisionFixture::awaitRequestsTo(const std::string& peer, std::size_t count) {
    while (Board::received(peer).size() < count) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
}

void SupervisionFixture::expectLogged(const Records& records) {
    expectInSharedMemory(records);
    Words expected;
    for (const Record& record : records) {
        expected.push_back(record.inSystemLog);
    }
    EXPECT_EQ(systemLog(), expected);
}

void SupervisionFixture::expectInSharedMemory(const Records& records) {
    Words expected;
    for (const Record& record : records) {
        expected.push_back(record.inSharedMemory);
    }
    EXPECT_EQ(sharedMemoryLog(), expected);
}

Words SupervisionFixture::sharedMemoryLog() {
    Words entries = logEntries("dispatcher_log_memory");
    std::erase_if(entries,  // the dispatchers also write there
                  [](const std::string& entry) { return entry.find(" Supervision: ") == std::string::npos; });
    return entries;
}

Words SupervisionFixture::systemLog() {
    // The test's own record comes after all records of the supervision.
    const std::string end = "end of the supervision";
    ::syslog(LOG_INFO, "%s", end.c_str());
    Words lines;
    while (lines.empty() || !lines.back().ends_with(end)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
        lines = linesOfFile(Boardsim::BoardPaths::systemLog);
    }
    lines.pop_back();
    std::transform(lines.begin(), lines.end(), lines.begin(), withoutTime);
    return lines;
}

Outcome endedSilently() {
    return {1, "", ""};
}

Outcome endedWith(const std::string& statusLine) {
    return {1, "", statusLine + "\n"};
}

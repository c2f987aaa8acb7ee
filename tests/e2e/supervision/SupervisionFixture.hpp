#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "Process.hpp"

using Words = std::vector<std::string>;

/// A message of the supervision as each log shows it.
struct Record {
    std::string inSharedMemory;
    std::string inSystemLog;
};
using Records = std::vector<Record>;

Record error(const std::string& text);
Record information(const std::string& text);

/// The first record of a supervision.
Record started(const std::string& dispatchers);

/// The supervision as a process, and its results.
class SupervisionFixture : public testing::Test {
protected:
    static constexpr const char* timeOut = "poll(): Timed out while waiting for response";

    /// Starts a board. Without a scenario everything runs and nothing fails.
    void startBoard(const Boardsim::Scenario& scenario = {});

    /// Starts a board whose peers have these faults, each "PEER=FAULT".
    void startBoardWithFaults(const Words& faults);

    /// The status in the heartbeats of a peer of the board from now on.
    static void setStatus(const std::string& peer, unsigned status);

    /// Runs the supervision to its end.
    static Outcome supervise(const Words& options = {}, const Surroundings& surroundings = {});

    /// Starts the supervision without waiting for its end.
    static std::unique_ptr<Process> startSupervision(const Words& options = {});

    /// The datagrams that a peer of the board received so far. Without a failure they are heartbeat requests.
    static Words requestsTo(const std::string& peer);

    /// Waits until a peer of the board has received that many.
    static void awaitRequestsTo(const std::string& peer, std::size_t count);

    /// Checks that both logs have exactly these messages. Needs a board with a system log.
    static void expectLogged(const Records& records);

    /// Checks that the shared-memory log has exactly these messages.
    static void expectInSharedMemory(const Records& records);

    /// The supervision's entries in the shared-memory log, and the records that the board's system log
    /// received.
    static Words sharedMemoryLog();
    static Words systemLog();

private:
    std::unique_ptr<Boardsim::Board> running;
};

/// The outcome of a supervision that prints nothing, or the status of its peers.
Outcome endedSilently();
Outcome endedWith(const std::string& statusLine);

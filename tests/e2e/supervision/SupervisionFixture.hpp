#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "Process.hpp"

using Words = std::vector<std::string>;

/// What the supervision logs, as each of the logs shows it.
struct Record {
    std::string inSharedMemory;
    std::string inSystemLog;
};
using Records = std::vector<Record>;

Record error(const std::string& text);
Record information(const std::string& text);

/// The record that a supervision begins with.
Record started(const std::string& dispatchers);

/// The supervision as a process, and what becomes of it.
class SupervisionFixture : public testing::Test {
protected:
    static constexpr const char* timeOut = "poll(): Timed out while waiting for response";

    /// Starts a board; without a scenario one on which everything runs and nothing misbehaves.
    void startBoard(const Boardsim::Scenario& scenario = {});

    /// Starts a board whose peers have these faults, each "PEER=FAULT".
    void startBoardWithFaults(const Words& faults);

    /// The status in the heartbeats of a peer of the board from now on.
    static void setStatus(const std::string& peer, unsigned status);

    /// Runs the supervision to its end.
    static Outcome supervise(const Words& options = {}, const Surroundings& surroundings = {});

    /// Starts the supervision without waiting for its end.
    static std::unique_ptr<Process> startSupervision(const Words& options = {});

    /// The datagrams that a peer of the board received so far: heartbeat requests, if all is well.
    static Words requestsTo(const std::string& peer);

    /// Returns once a peer of the board received that many.
    static void awaitRequestsTo(const std::string& peer, std::size_t count);

    /// Exactly this was logged, in both places. Needs a board with a system log.
    static void expectLogged(const Records& records);

    /// Exactly this was logged in the shared-memory log.
    static void expectInSharedMemory(const Records& records);

    /// What the supervision logged in the shared-memory log, and what the board's system log received.
    static Words sharedMemoryLog();
    static Words systemLog();

private:
    std::unique_ptr<Boardsim::Board> running;
};

/// How a supervision ends that says nothing on the console, or the status of its peers.
Outcome endedSilently();
Outcome endedWith(const std::string& statusLine);

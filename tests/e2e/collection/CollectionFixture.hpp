#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Board.hpp"
#include "BoardTexts.hpp"
#include "Injection.hpp"
#include "Process.hpp"

/// A simulated board, log collection as a process on it, and the results.
class CollectionFixture : public testing::Test {
protected:
    static inline const std::string fullCollection =
        "The collection holds 50331648 bytes, what follows is left out\n";

    static constexpr const char* workDir = "/tmp/korvel";
    static constexpr const char* packageDir = "/ffs/run/logs";
    static constexpr const char* timedOut = "poll(): Timed out while waiting for response";

    /// The shell command that searches for the NetFP processes.
    static constexpr const char* listing =
        "ps aux | grep -v -E \"grep|korvel\" | grep -E "
        "\"netfp_server|netfp_proxy|netfp_master|resmgr_server\""
        " > /tmp/korvelpids.tmp";

    /// Starts a board. Without a scenario everything runs and nothing fails.
    void startBoard(const Boardsim::Scenario& scenario = {});

    /// Starts a board whose peers have these faults, each "PEER=FAULT".
    void startBoardWithFaults(const Words& faults);

    /// Starts a board on which these peers do not run.
    void startBoardWithout(const Words& peers);

    const Boardsim::Board& board() const { return *running; }

    /// Runs korvel with these arguments to its end. Other programs' messages are English.
    static Outcome collect(const Words& arguments, const Surroundings& surroundings = {});

    /// The same with failing system calls.
    static Outcome collectInjected(const Injection& injection, const Words& arguments);

    /// Starts korvel without waiting for its end.
    static std::unique_ptr<Process> startCollection(const Words& arguments, Surroundings surroundings = {});

    /// Every file in the work directory.
    static Files workFiles();

    /// The requests that a dispatcher's MMI service received so far.
    static Words requestsTo(const std::string& dispatcher);

    /// Waits until a dispatcher has received a request.
    static void awaitRequestTo(const std::string& dispatcher);

    /// The search path for programs, the board's own first.
    static std::string searchPath();

    /// Writes a shell script that replaces the board's command of the same name. It applies to runs with the
    /// returned surroundings.
    static Surroundings withCommand(const std::string& name, const std::string& script);

    /// The first lines of a verbose run: the lines about the option "-d", if any, then the collectors that
    /// have nothing to do.
    static std::string verboseStart(const std::string& selection, const Words& skippedCollectors);

private:
    std::unique_ptr<Boardsim::Board> running;
};

/// The outcome of a successful run.
Outcome success(std::string out = {}, std::string err = {});

/// The outcome of a failed run.
Outcome failure(std::string out, std::string err);

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

/// A simulated board, log collection as a process on it, and what becomes of that.
class CollectionFixture : public testing::Test {
protected:
    static inline const std::string fullCollection =
        "The collection holds 50331648 bytes, what follows is left out\n";

    static constexpr const char* workDir = "/tmp/korvel";
    static constexpr const char* packageDir = "/ffs/run/logs";
    static constexpr const char* timedOut = "poll(): Timed out while waiting for response";

    /// The search for the NetFP processes, as the shell gets it.
    static constexpr const char* listing =
        "ps aux | grep -v -E \"grep|korvel\" | grep -E "
        "\"netfp_server|netfp_proxy|netfp_master|resmgr_server\""
        " > /tmp/korvelpids.tmp";

    /// Starts a board; without a scenario one on which everything runs and nothing misbehaves.
    void startBoard(const Boardsim::Scenario& scenario = {});

    /// Starts a board whose peers have these faults, each "PEER=FAULT".
    void startBoardWithFaults(const Words& faults);

    /// Starts a board on which these peers do not run.
    void startBoardWithout(const Words& peers);

    const Boardsim::Board& board() const { return *running; }

    /// Runs korvel with these arguments to its end. Other programs' messages are English.
    static Outcome collect(const Words& arguments, const Surroundings& surroundings = {});

    /// The same with system calls that go wrong.
    static Outcome collectInjected(const Injection& injection, const Words& arguments);

    /// Starts korvel without waiting for its end.
    static std::unique_ptr<Process> startCollection(const Words& arguments, Surroundings surroundings = {});

    /// Every file in the work directory.
    static Files workFiles();

    /// What a dispatcher's MMI service was asked so far.
    static Words requestsTo(const std::string& dispatcher);

    /// Returns once a dispatcher has been asked something.
    static void awaitRequestTo(const std::string& dispatcher);

    /// Where programs are found, the board's own first.
    static std::string searchPath();

    /// Puts a shell script on the search path of the runs that get the returned surroundings, in front of a
    /// command of the board of the same name.
    static Surroundings withCommand(const std::string& name, const std::string& script);

    /// How a verbose run begins: what it says of the option "-d" (lines, or nothing), then of the collectors
    /// that have nothing to do.
    static std::string verboseStart(const std::string& selection, const Words& skippedCollectors);

private:
    std::unique_ptr<Boardsim::Board> running;
};

/// How a run ends that did what it was asked for.
Outcome success(std::string out = {}, std::string err = {});

/// How a run ends that did not.
Outcome failure(std::string out, std::string err);

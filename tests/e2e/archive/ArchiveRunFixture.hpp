#pragma once

#include <csignal>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "FakeTime.hpp"
#include "FollowedLog.hpp"
#include "Process.hpp"

/// The archiver as a process that runs until a signal ends it. Its clocks run faster.
class ArchiveRunFixture : public testing::Test {
protected:
    static constexpr int speed = 20;  ///< reads the logs four times a second
    static constexpr std::size_t threshold = FollowedLog::threshold;

    ArchiveRunFixture();

    void start(const Surroundings& surroundings = atSpeed(speed));
    const Process& archiver() const { return *process; }

    /// Sends a signal to the archiver, and waits for its end.
    Outcome end(int signal = SIGTERM);

    /// The outcome of an archiver that printed nothing.
    static Outcome endedBy(int signal) { return {128 + signal, "", ""}; }

    /// Waits for a result of the archiver. Fails the test if it does not come.
    static void await(const std::function<bool()>& condition);

    /// Archives SYSLIB's log up to one entry before the next rotation, then writes that entry. It writes the
    /// entries one by one. Otherwise the archiver might rotate a piece of another size.
    void approachRotation();
    void completePiece() { syslib.log.write(1); }

    /// The archiver's reports in the dispatcher's log, without their time.
    static std::string openForMonitoring(const FollowedLog& followed);
    static std::string notOpened(const FollowedLog& followed);
    static std::string notWritten(const FollowedLog& followed);

    /// All entries of the dispatcher's log.
    static std::vector<std::string> records();

    /// Waits until the log has that many entries.
    static void awaitRecords(std::size_t count);

    FollowedLog dispatcher{"dispatcher_log_memory", "dispatcher"};
    FollowedLog syslib{"syslib_log_memory", "syslib"};

private:
    std::unique_ptr<Process> process;
};

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

/// The archiver as a process that runs until it is ended, with clocks of its own that run faster.
class ArchiveRunFixture : public testing::Test {
protected:
    static constexpr int speed = 20;  ///< so that it looks at the logs four times a second
    static constexpr std::size_t threshold = FollowedLog::threshold;

    ArchiveRunFixture();

    void start(const Surroundings& surroundings = atSpeed(speed));
    const Process& archiver() const { return *process; }

    /// Sends a signal to the archiver, and waits for its end.
    Outcome end(int signal = SIGTERM);

    /// How an archiver ends that had nothing to say.
    static Outcome endedBy(int signal) { return {128 + signal, "", ""}; }

    /// Waits for something that the archiver will do; fails the test where it never does.
    static void await(const std::function<bool()>& condition);

    /// Has SYSLIB's log archived up to one entry before the next rotation, and that entry written. One by
    /// one, since an archiver that looks while many are written would rotate a piece of another size.
    void approachRotation();
    void completePiece() { syslib.log.write(1); }

    /// What the archiver reports, as it stands in the dispatcher's log without its time.
    static std::string openForMonitoring(const FollowedLog& followed);
    static std::string notOpened(const FollowedLog& followed);
    static std::string notWritten(const FollowedLog& followed);

    /// All that stands in the dispatcher's log.
    static std::vector<std::string> records();

    /// Waits until so many entries stand there.
    static void awaitRecords(std::size_t count);

    FollowedLog dispatcher{"dispatcher_log_memory", "dispatcher"};
    FollowedLog syslib{"syslib_log_memory", "syslib"};

private:
    std::unique_ptr<Process> process;
};

#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "Process.hpp"
#include "VerboseText.hpp"

namespace {

/// A system log that has stopped reading, with its queue full.
class StuckSystemLog {
public:
    StuckSystemLog() {
        const auto* const generic = reinterpret_cast<const sockaddr*>(&address);
        EXPECT_EQ(bind(log, generic, sizeof address), 0);
        while (sendto(sender, "x", 1, MSG_DONTWAIT, generic, sizeof address) == 1) {
        }
    }
    StuckSystemLog(const StuckSystemLog&) = delete;
    StuckSystemLog& operator=(const StuckSystemLog&) = delete;
    StuckSystemLog(StuckSystemLog&&) = delete;
    StuckSystemLog& operator=(StuckSystemLog&&) = delete;
    ~StuckSystemLog() {
        close(log);
        close(sender);
    }

private:
    static constexpr sockaddr_un address{.sun_family = AF_UNIX, .sun_path = "/dev/log"};
    int log = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    int sender = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
};

}  // namespace

TEST(SystemLog, DoesNotBlockTheRunIfItStoppedReading) {
    const StuckSystemLog log;
    const Outcome outcome = korvel({"-v", "getport", "4"});
    EXPECT_EQ(outcome.out, verboseEnabled + getPort4Lines);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

TEST(SystemLog, IsNotNeeded) {
    const Outcome outcome = korvel({"-v", "getport", "4"});
    EXPECT_EQ(outcome.out, verboseEnabled + getPort4Lines);
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, 0);
}

// A child inherits its parent's client and can use the log like any other process.

#include <atomic>
#include <csignal>
#include <filesystem>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include "ChildProcess.hpp"
#include "Gate.hpp"
#include "LogFixture.hpp"

namespace {

class SmLogForkTest : public LogFixture {
protected:
    /// The descriptor that this process's client uses for the log's lock, or -1.
    int clientDescriptor() const {
        for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
            std::error_code closed;  // the iterator's own descriptor, closed meanwhile
            if (std::filesystem::read_symlink(entry, closed) == path) {
                return std::stoi(entry.path().filename());
            }
        }
        return -1;
    }

    bool lockAsClient() const { return ::flock(clientDescriptor(), LOCK_EX | LOCK_NB) == 0; }
};

TEST_F(SmLogForkTest, LosesNothingThatParentAndChildWriteThroughOneClient) {
    constexpr int count = 5000;
    client();
    ChildProcess child([this] {
        writeNumbered(0, count);
        return true;
    });
    writeNumbered(count, count);

    EXPECT_TRUE(child.succeeds());
    const std::vector<std::string> kept = keptTexts();
    const std::vector<std::string> written = numbered(0, 2 * count);
    EXPECT_EQ(kept.size(), written.size());
    EXPECT_TRUE(std::set(kept.begin(), kept.end()) == std::set(written.begin(), written.end()));
}

TEST_F(SmLogForkTest, LocksTheChildOutDuringTheParentsOperations) {
    client();
    ASSERT_TRUE(lockAsClient());

    ChildProcess child([this] { return clientDescriptor() != -1 && !lockAsClient(); });

    EXPECT_TRUE(child.succeeds());
}

TEST_F(SmLogForkTest, ReleasesTheLockOfADeadParentWithALivingChild) {
    Gate testEnd;
    ChildProcess parent([&] {
        client();
        if (::fork() == 0) {
            testEnd.pass();
            ::_exit(0);
        }
        return lockAsClient() && ::raise(SIGKILL) == 0;
    });
    EXPECT_TRUE(parent.endsBy(SIGKILL));

    writeNumbered(0, 3);

    EXPECT_EQ(keptTexts(), numbered(0, 3));
}

TEST_F(SmLogForkTest, WorksInAChildOfAProcessWhoseThreadsAreWriting) {
    std::atomic<bool> enough = false;
    client();
    std::thread writer([this, &enough] {
        while (!enough) {
            writeNumbered(0, 1);
        }
    });
    bool served = true;
    for (int i = 0; i < 100; ++i) {
        ChildProcess child([this] {
            writeNumbered(0, 1);
            return !read(0).text.empty();
        });
        served = child.succeeds() && served;
    }
    enough = true;
    writer.join();

    EXPECT_TRUE(served);
}

TEST_F(SmLogForkTest, PassesNoDescriptorToAnotherProgram) {
    client();
    EXPECT_EQ(::fcntl(clientDescriptor(), F_GETFD), FD_CLOEXEC);
}

}  // namespace

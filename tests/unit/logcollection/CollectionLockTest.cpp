// The lock that lets only one collection run at a time.

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <thread>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include "CollectionLock.hpp"
#include "Printed.hpp"
#include "Shell.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;
using Korvel::CollectionLock;
using namespace std::chrono_literals;

namespace {

class CollectionLockTest : public testing::Test {
protected:
    static constexpr const char* directory = "/tmp/locked";
    static constexpr auto longTime = std::chrono::hours(1);

    CollectionLockTest() {
        fs::remove_all(directory);
        fs::remove_all("/tmp/moved");
    }

    /// Takes the lock in a new file description, as another process would. Returns its reports.
    static std::string take(std::optional<CollectionLock>& lock, std::chrono::milliseconds limit = longTime) {
        const Printed printed = printedBy([&] { lock.emplace(directory, limit); });
        EXPECT_EQ(printed.out, "");
        return printed.err;
    }

    /// Takes the lock while somebody else holds it. `whileItWaits` runs on another thread and must end with
    /// release(). The lock must not be taken before that. Returns its reports.
    std::string takeAfter(std::optional<CollectionLock>& lock, const std::function<void()>& whileItWaits) {
        return printedBy([&] {
                   std::thread others([&] {
                       while (!somethingIsReported()) {
                           std::this_thread::sleep_for(1ms);
                       }
                       whileItWaits();
                   });
                   lock.emplace(directory, longTime);
                   EXPECT_TRUE(released);
                   others.join();
               })
            .err;
    }

    void release(std::optional<CollectionLock>& lock) {
        released = true;
        lock.reset();
    }

    /// True if nobody holds the lock on the directory.
    static bool isFree() {
        const Base::UniqueFd folder(::open(directory, O_RDONLY | O_CLOEXEC));
        return ::flock(folder.get(), LOCK_EX | LOCK_NB) == 0;
    }

    static constexpr const char* waiting = "Another log collection is running, waiting for its end\n";

    std::optional<CollectionLock> first;
    std::optional<CollectionLock> second;

private:
    /// Captures standard error in a file.
    static bool somethingIsReported() {
        struct stat status {};
        return ::fstat(STDERR_FILENO, &status) == 0 && status.st_size > 0;
    }

    std::atomic<bool> released = false;
};

TEST_F(CollectionLockTest, IsTakenImmediatelyAndHeldUntilTheEnd) {
    EXPECT_EQ(take(first), "");
    EXPECT_FALSE(isFree());

    first.reset();

    EXPECT_TRUE(isFree());
}

TEST_F(CollectionLockTest, AcceptsAnExistingDirectory) {
    writeFile("/tmp/locked/kept.log", "kept");

    EXPECT_EQ(take(first), "");

    EXPECT_FALSE(isFree());
    EXPECT_EQ(contentOfFile("/tmp/locked/kept.log"), "kept");
}

TEST_F(CollectionLockTest, WaitsForAnotherHolderAndReportsItOnce) {
    take(first);

    EXPECT_EQ(takeAfter(second,
                        [&] {
                            std::this_thread::sleep_for(200ms);
                            release(first);
                        }),
              waiting);

    EXPECT_FALSE(isFree());
}

TEST_F(CollectionLockTest, IsSkippedAfterTheTimeOut) {
    take(first);
    const auto start = std::chrono::steady_clock::now();

    EXPECT_EQ(take(second, 200ms), waiting);

    EXPECT_GE(std::chrono::steady_clock::now() - start, 200ms);
    second.reset();
    EXPECT_FALSE(isFree());  // still the first one's
}

TEST_F(CollectionLockTest, IsSkippedIfTheDirectoryCannotBeOpened) {
    writeFile(directory, "a file");
    EXPECT_EQ(take(first), "");

    fs::remove(directory);
    fs::create_symlink("locked", directory);
    EXPECT_EQ(take(first), "");

    fs::remove(directory);
    fs::create_directory(directory);
    fs::permissions(directory, fs::perms::none);
    EXPECT_EQ(take(first), "");
}

TEST_F(CollectionLockTest, IsNotInheritedByCommands) {
    take(first);

    EXPECT_EQ(printedBy([] {
                  EXPECT_TRUE(Korvel::executeCommand("ls -l /proc/self/fd | grep -c locked || true"));
              }).out,
              "0\n");
}

TEST_F(CollectionLockTest, WaitsForAHolderWhoseDirectoryWasRemoved) {
    take(first);

    EXPECT_EQ(takeAfter(second,
                        [&] {
                            fs::rename(directory, "/tmp/moved");
                            fs::create_directory(directory);
                            std::this_thread::sleep_for(200ms);
                            release(first);
                        }),
              waiting);

    EXPECT_FALSE(isFree());  // the directory at the same path
}

TEST_F(CollectionLockTest, WaitsAgainIfTheNewDirectoryIsLockedToo) {
    take(first);
    std::optional<CollectionLock> third;

    EXPECT_EQ(takeAfter(second,
                        [&] {
                            fs::rename(directory, "/tmp/moved");
                            third.emplace(directory, longTime);
                            first.reset();
                            std::this_thread::sleep_for(200ms);
                            release(third);
                        }),
              waiting);

    EXPECT_FALSE(isFree());
}

}  // namespace

// Everybody can write below /dev/shm. No file there may do harm.

#include <csignal>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "ChildProcess.hpp"
#include "LogFixture.hpp"
#include "LogRing.hpp"

namespace {

using HostBoard::LogRing;

class SmLogMemoryTest : public LogFixture {
protected:
    void fillMemoryWith(const std::string& content) const {
        std::ofstream(path, std::ios::binary) << content;
    }
    std::string memory() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void resizeMemory(std::size_t size) const {
        ASSERT_EQ(::truncate(path.c_str(), static_cast<off_t>(size)), 0);
    }
    void overwriteStart(const std::string& content) const {
        std::fstream(path, std::ios::in | std::ios::out | std::ios::binary) << content;
    }
    static std::string bytesOf(std::uint64_t number) {
        return {reinterpret_cast<const char*>(&number), sizeof number};
    }
    SmLog* findClient() const { return SmLog::getClientInstance(name.c_str(), 3); }
};

TEST_F(SmLogMemoryTest, IsAccessibleOnlyToItsUser) {
    client();

    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode, S_IFREG | 0600U);
    EXPECT_EQ(status.st_uid, ::geteuid());
}

TEST_F(SmLogMemoryTest, HasNoClientIfAnotherFileHasItsName) {
    for (const std::string& content :
         {std::string("x"), std::string(LogRing::memorySize, 'x'), std::string(LogRing::memorySize - 1, '\0'),
          std::string(LogRing::memorySize + 1, '\0')}) {
        fillMemoryWith(content);
        EXPECT_EQ(findClient(), nullptr) << content.size();
        EXPECT_EQ(memory(), content) << "changed";
    }
}

TEST_F(SmLogMemoryTest, HasNoClientIfItsNameIsNoRegularFile) {
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
    EXPECT_EQ(findClient(), nullptr);
    ::unlink(path.c_str());

    ASSERT_EQ(::symlink("/dev/shm/elsewhere", path.c_str()), 0);
    EXPECT_EQ(findClient(), nullptr);
    ::unlink(path.c_str());

    ASSERT_EQ(::mkdir(path.c_str(), 0700), 0);
    EXPECT_EQ(findClient(), nullptr);
    ::rmdir(path.c_str());
}

TEST_F(SmLogMemoryTest, HasNoClientUntilThereIsMemory) {
    ChildProcess limited([this] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{.rlim_cur = 1 << 20, .rlim_max = 1 << 20};
        return ::setrlimit(RLIMIT_FSIZE, &limit) == 0 && findClient() == nullptr;
    });

    EXPECT_TRUE(limited.succeeds());
    EXPECT_NE(findClient(), nullptr);
}

TEST_F(SmLogMemoryTest, FinishesTheWorkOfADyingCreator) {
    fillMemoryWith("");
    writeNumbered(0, 1);
    EXPECT_EQ(keptTexts(), numbered(0, 1));
}

TEST_F(SmLogMemoryTest, FinishesAMemoryThatIsAllHoles) {
    fillMemoryWith("");
    resizeMemory(LogRing::memorySize);
    writeNumbered(0, 1);

    EXPECT_EQ(keptTexts(), numbered(0, 1));
    struct stat status {};
    ASSERT_EQ(::stat(path.c_str(), &status), 0);
    EXPECT_GE(static_cast<std::size_t>(status.st_blocks) * 512, LogRing::memorySize);
}

TEST_F(SmLogMemoryTest, StartsAgainAfterItWasEmptied) {
    writeNumbered(0, 10);
    const unsigned before = read(0).end;
    resizeMemory(0);

    const Reading emptied = read(before);
    writeNumbered(10, 5);

    EXPECT_EQ(emptied.text, "");
    EXPECT_TRUE(client().overlap(before, emptied.end));
    EXPECT_EQ(textsOf(read(emptied.end).text), numbered(10, 5));
}

TEST_F(SmLogMemoryTest, FailsReadsAndWritesAfterItWasTruncated) {
    writeNumbered(0, 10);
    const unsigned before = read(0).end;
    resizeMemory(4096);

    writeNumbered(10, 5);
    const Reading cut = read(before);

    EXPECT_EQ(cut.text, "");
    EXPECT_EQ(cut.end, before);
}

TEST_F(SmLogMemoryTest, FailsReadsAndWritesAfterItWasOverwritten) {
    writeNumbered(0, 10);
    const unsigned before = read(0).end;
    const std::string magic = memory().substr(0, sizeof(std::uint64_t));
    constexpr std::uint64_t tooFar = LogRing::capacity + 1;

    for (const std::string& header :
         {std::string(24, 'x'), magic + bytesOf(5) + bytesOf(4), magic + bytesOf(0) + bytesOf(tooFar)}) {
        overwriteStart(header);
        writeNumbered(10, 5);
        const Reading nothing = read(before);
        EXPECT_EQ(nothing.text, "");
        EXPECT_EQ(nothing.end, before);
    }
}

TEST_F(SmLogMemoryTest, AppendsAfterTextWithoutALineEnd) {
    writeNumbered(0, 1);
    const std::string valid = memory();
    overwriteStart(valid.substr(0, sizeof(std::uint64_t)) + bytesOf(0) + bytesOf(10));

    EXPECT_EQ(read(0).text, "");
    writeNumbered(1, 60000);
    EXPECT_EQ(keptTexts().back(), "entry 60000");
}

}  // namespace

#include <cerrno>
#include <cstdio>
#include <memory>
#include <ostream>
#include <string>

#include <fcntl.h>
#include <gtest/gtest.h>

#include "DescriptorBuffer.hpp"
#include "SignalStorm.hpp"
#include "TestFiles.hpp"
#include "UniqueFd.hpp"

using Korvel::DescriptorBuffer;

namespace {

constexpr const char* bufferedPath = "/tmp/output";

/// A stream that writes to a file.
class BufferedFile : public testing::Test {
protected:
    Base::UniqueFd file{::open(bufferedPath, O_WRONLY | O_CREAT | O_CLOEXEC, 0644)};
    DescriptorBuffer buffer{file.get()};
    std::ostream stream{&buffer};
};

TEST_F(BufferedFile, GetsItsTextWhenTheStreamIsFlushed) {
    stream << "text " << 7;
    EXPECT_EQ(contentOfFile(bufferedPath), "");

    stream.flush();
    EXPECT_EQ(contentOfFile(bufferedPath), "text 7");
}

TEST_F(BufferedFile, GetsManySmallPiecesInTheirOrder) {
    std::string expected;
    for (int i = 0; i < 20000; ++i) {
        stream << i << ' ';
        stream.put('.');
        expected += std::to_string(i) + " .";
    }
    stream.flush();

    EXPECT_TRUE(contentOfFile(bufferedPath) == expected);
}

TEST_F(BufferedFile, GetsALargePieceAfterTheBufferedText) {
    const std::string large(100000, 'x');

    stream << "held " << large;

    EXPECT_TRUE(contentOfFile(bufferedPath) == "held " + large);
}

TEST(BufferedDevice, FailsTheStreamAndReportsTheReason) {
    const Base::UniqueFd full(::open("/dev/full", O_WRONLY | O_CLOEXEC));
    DescriptorBuffer buffer(full.get());
    std::ostream stream(&buffer);

    stream << "text" << std::flush;

    EXPECT_EQ(errno, ENOSPC);
    EXPECT_FALSE(stream);
}

/// A stream to a pipe that is full before its reader starts.
class SlowPipe : public testing::Test {
protected:
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> reader{::popen("sleep 0.2; cat > /tmp/output", "we"),
                                                           ::pclose};
    const int descriptor = ::fileno(reader.get());
    DescriptorBuffer buffer{descriptor};
    std::ostream stream{&buffer};
    const std::string large = std::string(1U << 20, 'x');

    void expectEverythingAtTheReader() {
        stream << "first " << large << " last" << std::flush;

        EXPECT_TRUE(stream);
        reader.reset();
        EXPECT_TRUE(contentOfFile(bufferedPath) == "first " + large + " last");
    }
};

TEST_F(SlowPipe, GetsEverythingDespiteSignals) {
    const SignalStorm storm;

    expectEverythingAtTheReader();
    EXPECT_GT(SignalStorm::count(), 0);
}

TEST_F(SlowPipe, GetsEverythingDespiteSignalsIfItDoesNotBlock) {
    ASSERT_EQ(::fcntl(descriptor, F_SETFL, O_NONBLOCK), 0);
    const SignalStorm storm;

    expectEverythingAtTheReader();
    EXPECT_GT(SignalStorm::count(), 0);
}

}  // namespace

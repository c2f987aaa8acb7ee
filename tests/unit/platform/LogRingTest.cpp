// A ring whose header another process changes during an operation, although it does not hold the lock.

#include <atomic>
#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "LogRing.hpp"

namespace {

using HostBoard::LogRing;

class LogRingTest : public testing::Test {
protected:
    LogRingTest() { ring.prepare(); }

    /// Changes the header until it is destroyed: in turn, the ring is full and empty.
    std::jthread attack() {
        const std::atomic_ref head(memory[headAt]);
        std::jthread attacker([head](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                head = LogRing::capacity;
                head = 0;
            }
        });
        while (head == 0) {
            std::this_thread::yield();
        }
        return attacker;
    }

    /// Repeats the work so often that changes come in the middle of it.
    template <typename Work>
    static void repeat(Work work) {
        constexpr std::chrono::milliseconds enough{500};
        const auto end = std::chrono::steady_clock::now() + enough;
        while (std::chrono::steady_clock::now() < end) {
            work();
        }
    }

    static constexpr std::size_t tailAt = 1;  // after the magic word
    static constexpr std::size_t headAt = 2;

    std::vector<std::uint64_t> memory =
        std::vector<std::uint64_t>(LogRing::memorySize / sizeof(std::uint64_t));
    LogRing ring{std::as_writable_bytes(std::span(memory))};
};

TEST_F(LogRingTest, FinishesAppendingWhileTheHeaderChanges) {
    const std::string withoutLineEnd(100, 'x');
    const std::jthread attacker = attack();

    repeat([&] {
        ring.append(withoutLineEnd);
        const std::atomic_ref tail(memory[tailAt]);
        tail = 0;
    });
}

TEST_F(LogRingTest, ReadsNoMoreThanItKeepsWhileTheHeaderChanges) {
    constexpr auto full = static_cast<unsigned>(LogRing::capacity);
    std::as_writable_bytes(std::span(memory))[LogRing::headerSize + full - 1] = std::byte{'\n'};
    std::vector<char> buffer(2 * LogRing::memorySize);
    const std::jthread attacker = attack();

    repeat([&] { EXPECT_LE(ring.read(buffer, full + 1).length, LogRing::capacity); });
}

}  // namespace

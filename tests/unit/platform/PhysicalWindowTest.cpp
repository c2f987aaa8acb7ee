#include <cerrno>
#include <csignal>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <sys/resource.h>
#include <unistd.h>

#include "ChildProcess.hpp"
#include "PhysicalWindow.hpp"

namespace {

using HostBoard::PhysicalWindow;

constexpr std::uint32_t base = 0xF0000000;
constexpr std::uint64_t length = 0x10000000;
constexpr std::uint64_t step = 0x10000;

class PhysicalWindowTest : public testing::Test {
protected:
    void TearDown() override { ::shm_unlink(name.c_str()); }

    std::byte* at(std::uint32_t physical) {
        void* address = nullptr;
        EXPECT_EQ(window.translate(physical, address), 0);
        return static_cast<std::byte*>(address);
    }

    /// True if the translation fails and does not change the pointer in a process with this limit of
    /// `resource`.
    bool failsUnder(decltype(RLIMIT_NOFILE) resource, rlim_t limit) {
        ChildProcess limited([this, resource, limit] {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit both{.rlim_cur = limit, .rlim_max = limit};
            void* address = this;
            return ::setrlimit(resource, &both) == 0 && window.translate(base, address) != 0 &&
                   address == this;
        });
        return limited.succeeds();
    }

    const std::string name = "/window_" + std::to_string(::getpid());
    PhysicalWindow window{name.c_str(), base, length, step};
};

TEST_F(PhysicalWindowTest, ContainsOnlyItsOwnAddresses) {
    EXPECT_TRUE(window.contains(base));
    EXPECT_TRUE(window.contains(0xFFFFFFFF));
    EXPECT_FALSE(window.contains(base - 1));
    EXPECT_FALSE(window.contains(0));
    EXPECT_FALSE(PhysicalWindow(name.c_str(), base, 0x1000, step).contains(base + 0x1000));
}

TEST_F(PhysicalWindowTest, KeepsAnAddressWhereItIs) {
    std::byte* const before = at(base + 3 * step + 5);
    at(base);
    at(base + 2 * step);

    EXPECT_EQ(at(base + 3 * step + 5), before);
}

TEST_F(PhysicalWindowTest, MapsOneStepAfterEveryAddress) {
    const auto last = static_cast<std::uint32_t>(base + 2 * step - 1);
    std::byte* const before = at(last);

    before[step] = std::byte{0x5A};

    EXPECT_EQ(*at(static_cast<std::uint32_t>(last + step)), std::byte{0x5A});
}

TEST_F(PhysicalWindowTest, ReachesItsLastByte) {
    *at(0xFFFFFFFF) = std::byte{0xA5};

    EXPECT_EQ(at(0xFFFFFF00)[0xFF], std::byte{0xA5});
}

TEST_F(PhysicalWindowTest, GrowsAgainAfterItsMemoryWasTruncated) {
    *at(base) = std::byte{1};
    ASSERT_EQ(::truncate(("/dev/shm" + name).c_str(), 0), 0);

    EXPECT_EQ(*at(base), std::byte{0});
}

TEST_F(PhysicalWindowTest, FailsWithAnErrorCodeWithoutMemory) {
    EXPECT_TRUE(failsUnder(RLIMIT_NOFILE, 3));
    EXPECT_TRUE(failsUnder(RLIMIT_FSIZE, 1 << 20));
    EXPECT_TRUE(failsUnder(RLIMIT_AS, 1 << 20));
}

TEST_F(PhysicalWindowTest, ReportsWhyItCannotOpenItsMemory) {
    void* address = this;
    PhysicalWindow nowhere("/no/such/folder", base, length, step);

    EXPECT_EQ(nowhere.translate(base, address), EINVAL);
    EXPECT_EQ(address, this);
}

}  // namespace

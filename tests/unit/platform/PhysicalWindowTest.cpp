#include <cerrno>
#include <cstddef>
#include <string>

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

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

    const std::string name = "/window_" + std::to_string(::getpid());
    PhysicalWindow window{name.c_str(), base, length, step};
};

TEST_F(PhysicalWindowTest, ContainsItsOwnAddressesAlone) {
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

TEST_F(PhysicalWindowTest, ReachesAStepBehindEveryAddress) {
    const auto last = static_cast<std::uint32_t>(base + 2 * step - 1);
    std::byte* const before = at(last);

    before[step] = std::byte{0x5A};

    EXPECT_EQ(*at(static_cast<std::uint32_t>(last + step)), std::byte{0x5A});
}

TEST_F(PhysicalWindowTest, ReachesItsLastByte) {
    *at(0xFFFFFFFF) = std::byte{0xA5};

    EXPECT_EQ(at(0xFFFFFF00)[0xFF], std::byte{0xA5});
}

TEST_F(PhysicalWindowTest, GrowsAgainWhenItsMemoryWasCut) {
    *at(base) = std::byte{1};
    ASSERT_EQ(::truncate(("/dev/shm" + name).c_str(), 0), 0);

    EXPECT_EQ(*at(base), std::byte{0});
}

TEST_F(PhysicalWindowTest, FailsWithoutSharedMemory) {
    void* address = this;
    PhysicalWindow nowhere("/no/such/folder", base, length, step);

    EXPECT_NE(nowhere.translate(base, address), 0);
    EXPECT_EQ(address, this);
}

}  // namespace

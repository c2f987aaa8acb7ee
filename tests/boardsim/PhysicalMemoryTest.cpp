// The content of the board's memory.

#include <array>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "Board.hpp"
#include "PhysicalMemory.hpp"
#include "Process.hpp"
#include "Vask.h"

using Boardsim::Board;

namespace {

template <typename Content>
Content at(std::uint32_t physical) {
    void* address = nullptr;
    EXPECT_EQ(vask_cma_phy_to_virt(physical, &address), 0);
    Content content{};
    std::memcpy(&content, address, sizeof content);
    return content;
}

/// The first descriptorWords of the descriptor.
using DescriptorWords = std::array<std::uint32_t, 8>;
const DescriptorWords descriptorWords{0x8000003c, 0, 0x00010203, 0xc000003c,
                                      0xeb700040, 0, 0xc0000100, 0xeb700000};

}  // namespace

TEST(PhysicalMemoryTest, HoldsADescriptorWithOtherBitsAboveItsLengths) {
    Boardsim::PhysicalMemory::fill();

    EXPECT_EQ(at<DescriptorWords>(0xeb6b6100), descriptorWords);
    EXPECT_EQ(at<DescriptorWords>(0xeb6b6120), DescriptorWords{});
}

TEST(PhysicalMemoryTest, HoldsAFrameAfterTheFreePartOfTheBuffer) {
    Boardsim::PhysicalMemory::fill();

    using Part = std::array<char, 64>;
    Part frame{};
    const std::string bytes(
        "\x01\x00\x5e\x00\x00\x01\x02\x00\x00\x00\x00\x01\x08\x00"
        "a frame of the simulated board",
        44);
    bytes.copy(frame.data(), bytes.size());
    EXPECT_EQ(at<Part>(0xeb700000), Part{});
    EXPECT_EQ(at<Part>(0xeb700040), frame);
}

TEST(PhysicalMemoryTest, IsInTheMemoryOfEveryBoard) {
    const Board board({});

    EXPECT_EQ(at<DescriptorWords>(Boardsim::PhysicalMemory::descriptor), descriptorWords);
    EXPECT_EQ(run({"devmem", "0xeb6b611c"}).out, "0xEB700000\n");
}

TEST(PhysicalMemoryTest, OverwritesTheRemainsOfAnEarlierBoard) {
    Boardsim::PhysicalMemory::fill();
    run({"devmem", "0xeb6b6100", "32", "7"});

    Boardsim::PhysicalMemory::fill();

    EXPECT_EQ(at<DescriptorWords>(0xeb6b6100), descriptorWords);
}

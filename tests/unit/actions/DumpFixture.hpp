#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "Printed.hpp"
#include "SimpleAction.hpp"

/// The board's physical memory, and an action that dumps from it.
class DumpFixture : public testing::Test {
protected:
    static constexpr std::uint32_t memory = 0xeb6b6100;  ///< an arbitrary address of the board's memory
    static constexpr std::uint32_t nowhere = 0x10;       ///< not an address of the board's memory

    static constexpr const char* outOfRange = "Value provided to decriptor dump is out of range\n";

    static void put(std::uint32_t physical, std::string_view bytes);

    /// The pointer of this process to the address, as an action shows it.
    static std::string virtualAddress(std::uint32_t physical);

    /// Makes the preparation of address translation fail with this code.
    static void breakTranslation(int code);

    /// Runs the action with these words, its keyword first. Stores its output in `printed`.
    bool run(Korvel::SimpleAction& action, const std::vector<std::string>& words);

    Printed printed;
};

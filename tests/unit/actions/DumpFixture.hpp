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
    static constexpr std::uint32_t memory = 0xeb6b6100;  ///< an address like any other of the board's memory
    static constexpr std::uint32_t nowhere = 0x10;       ///< no memory of the board

    static constexpr const char* outOfRange = "Value provided to decriptor dump is out of range\n";

    static void put(std::uint32_t physical, std::string_view bytes);

    /// Where this process sees the address, as an action shows it.
    static std::string virtualAddress(std::uint32_t physical);

    /// From now on, preparing for address translation fails with this code.
    static void breakTranslation(int code);

    /// Runs the action with these words, its keyword first. What it prints is in `printed`.
    bool run(Korvel::SimpleAction& action, const std::vector<std::string>& words);

    Printed printed;
};

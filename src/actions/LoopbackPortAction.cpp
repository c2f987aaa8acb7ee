#include "LoopbackPortAction.hpp"

#include <array>
#include <cstdio>

#include "Console.hpp"
#include "EnableWord.hpp"
#include "PortArgument.hpp"
#include "Shell.hpp"

namespace Korvel {
namespace {

// The SoC's Gigabit Ethernet switch subsystem: each port has one block of 32-bit SGMII registers.
constexpr unsigned switchSubsystem = 0x02090000;
constexpr unsigned resetOffset = 0x04;    // soft reset of the receive and transmit logic
constexpr unsigned controlOffset = 0x10;  // loopback and master bits
constexpr unsigned loopbackOn = 0x30;
constexpr unsigned loopbackOff = 0;

/// The register blocks of the four ports are at offsets 0x100, 0x200, 0x400 and 0x500.
unsigned registerBlock(int port) {
    constexpr unsigned blockSize = 0x100;
    const auto number = static_cast<unsigned>(port);
    return switchSubsystem + blockSize * (number > 2 ? number + 1 : number);
}

std::string writeCommand(unsigned address, const char* value) {
    constexpr std::size_t size = 64;
    std::array<char, size> text{};
    std::snprintf(text.data(), text.size(), "devmem 0x%08X 32 %s", address, value);
    return text.data();
}

std::string hexadecimal(unsigned value) {
    constexpr std::size_t size = 16;
    std::array<char, size> text{};
    std::snprintf(text.data(), text.size(), "0x%08X", value);
    return text.data();
}

}  // namespace

std::string LoopbackPortAction::getKeyword() {
    return keyword;
}

bool LoopbackPortAction::run(int argc, char** argv) {
    progress("Loopback Port Entry");
    progress("Parsing optional arguments");
    if (argc <= 3) {
        return fail("Loopback Port: Not enough arguments");
    }
    const std::optional<bool> enable = parseEnableWord(argv[2]);
    if (!enable) {
        return fail("Loopback Port: Could not find enable/disable");
    }
    const std::string argument = argv[3];
    const int port = resolvePort("Loopback Port", argument);
    if (!isSwitchPort(port)) {
        return fail("Loopback Port: Invalid port number \"", argument, "\"");
    }
    executeLoopbackCommand(*enable, port);
    return true;
}

bool LoopbackPortAction::executeLoopbackCommand(bool enable, int port) {
    const unsigned resetRegister = registerBlock(port) + resetOffset;
    const unsigned controlRegister = registerBlock(port) + controlOffset;
    const std::string control = hexadecimal(enable ? loopbackOn : loopbackOff);
    progress("Loopback Port: ", enable ? "Enabling" : "Disabling", " Loopback Port ", port);
    const std::array commands{
        writeCommand(controlRegister, "0"),
        writeCommand(resetRegister, "2"),
        writeCommand(controlRegister, control.c_str()),
        writeCommand(resetRegister, "0"),
    };
    for (const std::string& command : commands) {
        progress("Loopback Port: System call \"", command, "\"");
        if (runShell(command) < 0) {
            return fail("Loopback Port: System call failed");
        }
    }
    progress("Loopback Port: Success");
    return true;
}

void LoopbackPortAction::printHelpMsg(const std::string& indent, const std::string& programName) {
    print(indent, keyword, " enable interface:\n");
    print(indent, keyword, " disable interface:\n");
    print(indent, "  enable    (enable Loopback Port)\n");
    print(indent, "  disable   (disable Loopback Port)\n");
    print(indent, "  interface (interface or switch port to loopback)\n");
    print(indent, "Examples:\n");
    print(indent, "  ", programName, " ", keyword, " enable eth0\n");
}

}  // namespace Korvel

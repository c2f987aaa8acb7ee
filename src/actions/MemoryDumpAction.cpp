#include "MemoryDumpAction.hpp"

#include "Console.hpp"
#include "HexDump.hpp"
#include "Number.hpp"
#include "PrintFormatted.hpp"
#include "Vask.h"

namespace Korvel {

const std::string MemoryDumpAction::keyword = "mem_dump";

std::string MemoryDumpAction::getKeyword() {
    return keyword;
}

bool MemoryDumpAction::run(int argc, char** argv) {
    if (!parseCommand(argc, argv)) {
        return fail("Invalid parameters provided to memory dump");
    }
    if (!initializeCma()) {
        return false;
    }
    printMemory();
    return true;
}

bool MemoryDumpAction::parseCommand(int argc, char** argv) {
    constexpr int hexadecimal = 16;
    return argc >= 4 && parseArgument(argv[2], hexadecimal, physicalAddress) &&
           parseArgument(argv[3], 0, length);
}

bool MemoryDumpAction::parseArgument(const std::string& argument, int base, std::uint32_t& value) {
    const NumberError error = parseUnsigned(argument, base, value);
    if (error == NumberError::outOfRange) {
        fail("Value provided to decriptor dump is out of range");
    }
    return error == NumberError::none;
}

bool MemoryDumpAction::initializeCma() {
    const int code = ::vask_cma_process_init();
    if (code != 0) {
        printFormatted("Failed to initialize VASK CMA, errcode: %d", code);
    }
    return code == 0;
}

void* MemoryDumpAction::physicalToVirtual(unsigned physical) {
    void* address = nullptr;
    return ::vask_cma_phy_to_virt(physical, &address) == 0 ? address : nullptr;
}

void MemoryDumpAction::printMemory() const {
    const void* const memory = physicalToVirtual(physicalAddress);
    printFormatted("Memory dump:\n    Physical: 0x%x\n    Virtual:  %p\n", physicalAddress, memory);
    printFormatted("Hexdump of %u bytes:\n", length);
    if (memory != nullptr) {
        hexDump(memory, length);
    }
}

void MemoryDumpAction::hexDump(const void* data, unsigned size) {
    flushStandardOutput();  // unmapped memory kills the process; print the address first
    if (data != nullptr || size == 0) {
        printHexDump(data, size);
    }
}

void MemoryDumpAction::printHelpMsg(const std::string& indent, const std::string& programName) {
    print(indent, keyword, " <physical_address> <length>\n");
    print(indent, "Example:\n");
    print(indent, programName, " ", keyword,
          " 0xeb6b6100 32 - dumps 32 bytes located at physical address 0xeb6b6100\n\n");
}

}  // namespace Korvel

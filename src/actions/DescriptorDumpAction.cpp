#include "DescriptorDumpAction.hpp"

#include <algorithm>

#include "Console.hpp"
#include "Descriptor.hpp"
#include "PrintFormatted.hpp"

namespace Korvel {
namespace {

constexpr unsigned dumpedDescriptorBytes = 64;

/// For %p only; never dereferenced.
const void* asPointer(std::uint32_t physical) {
    // NOLINTNEXTLINE(performance-no-int-to-ptr): only printed
    return reinterpret_cast<const void*>(static_cast<std::uintptr_t>(physical));
}

}  // namespace

const std::string DescriptorDumpAction::keyword = "desc_dump";

std::string DescriptorDumpAction::getKeyword() {
    return keyword;
}

bool DescriptorDumpAction::run(int argc, char** argv) {
    if (!parseCommand(argc, argv)) {
        return fail("Invalid parameters provided to descriptor dump");
    }
    if (!initializeCma()) {
        return false;
    }
    printDescriptor();
    if (bufferDumpLength != 0) {
        printBuffer();
    }
    return true;
}

bool DescriptorDumpAction::parseCommand(int argc, char** argv) {
    constexpr int hexadecimal = 16;
    return argc >= 3 && parseArgument(argv[2], hexadecimal, descriptorAddress) &&
           (argc < 4 || parseArgument(argv[3], 0, bufferDumpLength));
}

void DescriptorDumpAction::printDescriptor() const {
    const void* const memory = physicalToVirtual(descriptorAddress);
    printFormatted("Decriptor highlights:\n    Physical: 0x%x\n    Virtual:  %p\n", descriptorAddress,
                   memory);
    if (memory == nullptr) {
        return;
    }
    flushStandardOutput();  // as in hexDump()
    const FPDisp::Descriptor descriptor(memory);
    printFormatted(
        "    Buffer length:      %u\n    Orig buffer length: %u\n    Buffer ptr:      %p\n"
        "    Orig buffer ptr: %p\n\n",
        descriptor.getBufLength(), descriptor.getOrigBufLength(), asPointer(descriptor.getBufPtr()),
        asPointer(descriptor.getOrigBufPtr()));
    print("Hexdump:\n");
    hexDump(memory, dumpedDescriptorBytes);
}

void DescriptorDumpAction::printBuffer() const {
    const void* const memory = physicalToVirtual(descriptorAddress);
    if (memory == nullptr) {
        return;
    }
    const FPDisp::Descriptor descriptor(memory);
    const std::uint32_t count = std::min(descriptor.getOrigBufLength(), bufferDumpLength);
    const void* const buffer = physicalToVirtual(descriptor.getOrigBufPtr());
    printFormatted("\nBuffer hexdump of first %u bytes:\n", count);
    if (buffer != nullptr) {
        hexDump(buffer, count);
    }
}

void DescriptorDumpAction::printHelpMsg(const std::string& indent, const std::string& programName) {
    print(indent, keyword, " <physical_address> [buf_length]\n");
    print(indent, "Examples:\n");
    print(indent, programName, " ", keyword,
          " 0xeb6b6100 - dumps descriptor in physical address 0xeb6b6100\n");
    print(indent, programName, " ", keyword,
          " 0xeb6b6100 32 - dumps descriptor in physical address 0xeb6b6100 and first 32 bytes of its "
          "buffer\n\n");
}

}  // namespace Korvel

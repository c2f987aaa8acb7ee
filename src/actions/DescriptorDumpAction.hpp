#pragma once

#include "MemoryDumpAction.hpp"

namespace Korvel {

/// "desc_dump": prints a packet descriptor in physical memory and, on request, the beginning of its original
/// buffer.
class DescriptorDumpAction : public MemoryDumpAction {
public:
    static const std::string keyword;

    std::string getKeyword() override;
    bool run(int argc, char** argv) override;
    void printHelpMsg(const std::string& indent, const std::string& programName) override;
    bool parseCommand(int argc, char** argv) override;

    /// Prints the descriptor's addresses, its fields and a dump of its first 64 bytes. If its address does
    /// not translate, prints only the addresses.
    void printDescriptor() const;

    /// Dumps the buffer, at most up to the buffer's own length. Prints nothing if the descriptor's address
    /// does not translate.
    void printBuffer() const;

private:
    std::uint32_t bufferDumpLength = 0;  // bytes; 0: no dump
    std::uint32_t descriptorAddress = 0;
};

}  // namespace Korvel

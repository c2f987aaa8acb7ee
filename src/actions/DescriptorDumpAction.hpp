#pragma once

#include "MemoryDumpAction.hpp"

namespace Korvel {

/// "desc_dump": shows a packet descriptor in physical memory, and on request the beginning of its original
/// buffer.
class DescriptorDumpAction : public MemoryDumpAction {
public:
    static const std::string keyword;

    std::string getKeyword() override;
    bool run(int argc, char** argv) override;
    void printHelpMsg(const std::string& indent, const std::string& programName) override;
    bool parseCommand(int argc, char** argv) override;

    /// What its words say, and a dump of its first 64 bytes. Only where it should be, where that address does
    /// not translate.
    void printDescriptor() const;

    /// A dump of the buffer, of its own length at most. Nothing where the descriptor's address does not
    /// translate.
    void printBuffer() const;

private:
    std::uint32_t bufferDumpLength = 0;  // bytes; 0: no dump of the buffer
    std::uint32_t descriptorAddress = 0;
};

}  // namespace Korvel

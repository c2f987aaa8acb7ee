#pragma once

#include <cstdint>
#include <string>

#include "SimpleAction.hpp"

namespace Korvel {

/// "mem_dump": a hex dump of physical memory, which the board's library maps into the process.
class MemoryDumpAction : public SimpleAction {
public:
    static const std::string keyword;

    std::string getKeyword() override;

    /// True where the range was dumped or its address does not translate. A range that is not mapped to its
    /// end ends the process: where memory ends cannot be known.
    bool run(int argc, char** argv) override;

    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    // The steps of run().

    /// False where an argument is missing or no number, and, reported, where one is beyond 32 bits.
    virtual bool parseCommand(int argc, char** argv);

    /// Prepares the process for address translation. A failure is told on standard output.
    static bool initializeCma();

    /// Where this process sees a physical address; null where it does not translate.
    static void* physicalToVirtual(unsigned physical);

    void printMemory() const;

    /// Without bytes, one line with the offset FFFFFFF0. Nothing where `data` is null and bytes are asked
    /// for.
    static void hexDump(const void* data, unsigned size);

protected:
    /// An argument as a 32-bit number, in `base` (0: as C's notation says); what follows its digits is
    /// ignored. A number beyond is reported.
    static bool parseArgument(const std::string& argument, int base, std::uint32_t& value);

private:
    std::uint32_t length = 0;  // bytes
    std::uint32_t physicalAddress = 0;
};

}  // namespace Korvel

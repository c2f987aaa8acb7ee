#pragma once

#include <cstdint>
#include <string>

#include "SimpleAction.hpp"

namespace Korvel {

/// "mem_dump": prints a hex dump of physical memory, which the board's library maps into the process.
class MemoryDumpAction : public SimpleAction {
public:
    static const std::string keyword;

    std::string getKeyword() override;

    /// Returns true if the range was dumped or its address does not translate. The end of mapped memory is
    /// unknown: a range that extends beyond it kills the process.
    bool run(int argc, char** argv) override;

    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    // The steps of run().

    /// Returns false if an argument is missing, not a number, or (reported) larger than 32 bits.
    virtual bool parseCommand(int argc, char** argv);

    /// Prepares the process for address translation. Reports a failure on standard output.
    static bool initializeCma();

    /// Returns the virtual address of a physical address, or null if it does not translate.
    static void* physicalToVirtual(unsigned physical);

    void printMemory() const;

    /// Dumps `size` bytes. If `size` is 0, prints one line with the offset FFFFFFF0. If `data` is null and
    /// `size` is not 0, prints nothing.
    static void hexDump(const void* data, unsigned size);

protected:
    /// Parses a 32-bit number in `base` (0: C notation); ignores anything after its digits. Reports a number
    /// that is out of range. Returns false if there is no such number.
    static bool parseArgument(const std::string& argument, int base, std::uint32_t& value);

private:
    std::uint32_t length = 0;  // bytes
    std::uint32_t physicalAddress = 0;
};

}  // namespace Korvel

#include "DumpedMemory.hpp"

#include <fstream>
#include <random>

#include "HostBoard.hpp"

const std::string memoryFile = std::string("/dev/shm") + HostBoard::ddrMemory;

const std::vector<std::string> memoryDumpCommand = {"korvel", "mem_dump", "0x80000000",
                                                    std::to_string(dumpedBytes)};

void fillDumpedMemory() {
    std::fstream memory(memoryFile, std::ios::in | std::ios::out | std::ios::binary);
    std::mt19937_64 random;  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same bytes in every run
    std::vector<std::uint64_t> words(std::size_t{1} << 16);
    const std::size_t pieceBytes = words.size() * sizeof words.front();
    for (std::size_t filled = 0; filled < dumpedBytes; filled += pieceBytes) {
        for (std::uint64_t& word : words) {
            word = random();
        }
        memory.write(reinterpret_cast<const char*>(words.data()), static_cast<std::streamsize>(pieceBytes));
    }
}

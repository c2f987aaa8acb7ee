#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// The physical memory that dumps are measured on, from the first address of the board's DDR on.
constexpr std::size_t dumpedBytes = std::size_t{64} << 20;

/// The file that plays the board's memory; the dumped bytes are its first ones.
extern const std::string memoryFile;

/// The command that dumps them.
extern const std::vector<std::string> memoryDumpCommand;

/// Fills them with bytes without a pattern, so that no tool can leave lines out.
void fillDumpedMemory();

#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// The size of the measured memory dumps. They start at the first address of the board's DDR memory.
constexpr std::size_t dumpedBytes = std::size_t{64} << 20;

/// The file that simulates the board's DDR memory. It starts with the dumped bytes.
extern const std::string memoryFile;

/// The command that dumps these bytes.
extern const std::vector<std::string> memoryDumpCommand;

/// Fills the dumped memory with random bytes, so that no tool can omit repeated lines.
void fillDumpedMemory();

#pragma once

namespace Korvel {

/// Prints `size` bytes on standard output, 16 a line: the offset from `data`, the bytes in hexadecimal, and
/// their characters ('.' for one that cannot be printed). Without bytes there is one line with the offset
/// FFFFFFF0. Needs the same little memory for any size. Ends early once standard output has failed.
void printHexDump(const void* data, unsigned size);

}  // namespace Korvel

#pragma once

namespace Korvel {

/// Prints `size` bytes on standard output, 16 per line: the offset from `data`, the bytes in hexadecimal, and
/// their characters ('.' for unprintable ones). If `size` is 0, prints one line with the offset FFFFFFF0.
/// Memory use does not depend on `size`. Stops early if standard output fails.
void printHexDump(const void* data, unsigned size);

}  // namespace Korvel

#pragma once

namespace Korvel {

/// Prints on standard output as printf does, and in the same order with everything else that is printed.
void printFormatted(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace Korvel

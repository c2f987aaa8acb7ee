#pragma once

namespace Korvel {

/// Prints on standard output as printf does, in order with other output.
void printFormatted(const char* format, ...) __attribute__((format(printf, 1, 2)));

}  // namespace Korvel

#include "PrintFormatted.hpp"

#include <array>
#include <cstdarg>
#include <cstdio>

#include "Console.hpp"

namespace Korvel {

void printFormatted(const char* format, ...) {
    std::array<char, 512> text{};
    std::va_list arguments;
    va_start(arguments, format);
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): va_start has initialized it
    std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    print(text.data());
}

}  // namespace Korvel

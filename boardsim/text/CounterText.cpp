#include "CounterText.hpp"

#include <iomanip>
#include <sstream>

namespace Boardsim {

std::string counterText(std::string_view title, std::span<const std::string_view> counters,
                        std::size_t step) {
    constexpr int nameWidth = 36;
    constexpr int valueWidth = 10;
    std::ostringstream out;
    out << title << '\n';
    std::size_t value = 0;
    for (const std::string_view name : counters) {
        out << "  " << std::left << std::setw(nameWidth) << name << std::right << std::setw(valueWidth)
            << value << '\n';
        value += step;
    }
    return out.str();
}

}  // namespace Boardsim

#include "Words.hpp"

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>

namespace Report {

std::string grouped(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t place = 3; place < text.size(); place += 4) {
        text.insert(text.size() - place, 1, ',');
    }
    return text;
}

std::string counted(std::uint64_t number, std::string_view one, std::string_view many) {
    std::string text = grouped(number).append(" ");
    if (number == 1) {
        return text.append(one);
    }
    return many.empty() ? text.append(one).append("s") : text.append(many);
}

std::string rateText(double perSecond) {
    constexpr double small = 10;
    constexpr double huge = 1e15;
    const double size = std::abs(perSecond);
    std::array<char, 32> text{};
    std::snprintf(text.data(), text.size(), size >= small && size < huge ? "%+.1f" : "%+.3g", perSecond);
    return text.data();
}

std::string sizeText(std::uint64_t bytes) {
    constexpr std::array<std::string_view, 3> units{"KiB", "MiB", "GiB"};
    constexpr std::uint64_t step = 1024;
    if (bytes < step) {
        return counted(bytes, "byte");
    }
    std::size_t unit = 0;
    std::uint64_t rest = bytes;
    for (; rest >= step * step && unit + 1 < units.size(); ++unit) {
        rest /= step;
    }
    const std::uint64_t tenths = rest % step * 10 / step;
    return grouped(rest / step) + "." + std::to_string(tenths).append(" ").append(units.at(unit));
}

}  // namespace Report

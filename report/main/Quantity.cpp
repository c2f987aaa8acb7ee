#include "Quantity.hpp"

#include <charconv>
#include <cstddef>
#include <limits>
#include <string>
#include <system_error>

namespace Report {
namespace {

std::optional<std::uint64_t> multiplied(std::optional<std::uint64_t> number, std::uint64_t factor) {
    if (!number || *number > std::numeric_limits<std::uint64_t>::max() / factor) {
        return std::nullopt;
    }
    return *number * factor;
}

}  // namespace

std::optional<std::uint64_t> parseCount(std::string_view text) {
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number == 0) {
        return std::nullopt;
    }
    return number;
}

std::optional<std::uint64_t> parseSize(std::string_view text) {
    constexpr std::string_view suffixes = "KMG";
    const std::size_t suffix = text.empty() ? std::string_view::npos : suffixes.find(text.back());
    if (suffix == std::string_view::npos) {
        return parseCount(text);
    }
    text.remove_suffix(1);
    return multiplied(parseCount(text), std::uint64_t{1} << (10 * (suffix + 1)));
}

std::optional<std::chrono::milliseconds> parseSeconds(std::string_view text) {
    constexpr std::uint64_t longest = 1'000'000'000;
    constexpr std::size_t digits = 3;
    const std::size_t point = text.find('.');
    std::string scaled(text.substr(0, point));
    const std::string_view fraction = point == std::string_view::npos ? "" : text.substr(point + 1);
    if (scaled.empty() || fraction.size() > digits || (point != std::string_view::npos && fraction.empty())) {
        return std::nullopt;
    }
    scaled.append(fraction).append(digits - fraction.size(), '0');
    const std::optional<std::uint64_t> milliseconds = parseCount(scaled);
    if (!milliseconds || *milliseconds > longest) {
        return std::nullopt;
    }
    return std::chrono::milliseconds(*milliseconds);
}

}  // namespace Report

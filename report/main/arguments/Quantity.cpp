#include "Quantity.hpp"

#include <algorithm>
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

bool isNumber(std::string_view text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
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
    constexpr std::string_view suffixes = "KkMmGg";
    const std::size_t suffix = text.empty() ? std::string_view::npos : suffixes.find(text.back());
    if (suffix == std::string_view::npos) {
        return parseCount(text);
    }
    text.remove_suffix(1);
    return multiplied(parseCount(text), std::uint64_t{1} << (10 * (suffix / 2 + 1)));
}

std::optional<std::chrono::milliseconds> parseSeconds(std::string_view text) {
    constexpr std::uint64_t longest = 1'000'000'000;
    constexpr std::size_t digits = 3;
    const std::size_t point = std::min(text.find('.'), text.size());
    const std::string_view whole = text.substr(0, point);
    const std::string_view fraction = text.substr(std::min(point + 1, text.size()));
    if (!isNumber(whole) || (point < text.size() && !isNumber(fraction))) {
        return std::nullopt;
    }
    std::string scaled(whole);
    scaled.append(fraction.substr(0, digits)).resize(whole.size() + digits, '0');
    if (scaled.find_first_not_of('0') == std::string::npos) {
        return std::chrono::milliseconds(0);
    }
    const std::optional<std::uint64_t> milliseconds = parseCount(scaled);
    if (!milliseconds || *milliseconds > longest) {
        return std::nullopt;
    }
    return std::chrono::milliseconds(*milliseconds);
}

}  // namespace Report

#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace Boardsim {

/// The decimal number that is the whole text. Nothing if the text is anything else or is out of range.
template <typename Number>
std::optional<Number> wholeNumber(std::string_view text) {
    Number number{};
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stop == end ? std::optional(number) : std::nullopt;
}

}  // namespace Boardsim

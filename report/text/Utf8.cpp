#include "Utf8.hpp"

#include <algorithm>
#include <array>
#include <cstdint>

namespace Report {
namespace {

/// How the first byte of a character determines its length, and the smallest code of that length.
struct Form {
    std::uint8_t mask;
    std::uint8_t mark;
    std::size_t length;
    char32_t smallest;
};

constexpr std::array forms{
    Form{0x80, 0x00, 1, 0x0},
    Form{0xE0, 0xC0, 2, 0x80},
    Form{0xF0, 0xE0, 3, 0x800},
    Form{0xF8, 0xF0, 4, 0x10000},
};

constexpr std::uint8_t byteOf(char character) {
    return static_cast<std::uint8_t>(character);
}

constexpr bool continues(char character) {
    return (byteOf(character) & 0xC0U) == 0x80U;
}

constexpr bool isCharacter(char32_t code) {
    return code <= 0x10FFFF && (code < 0xD800 || code > 0xDFFF);
}

}  // namespace

Utf8Character firstCharacter(std::string_view text) {
    if (text.empty()) {
        return {};
    }
    const std::uint8_t first = byteOf(text.front());
    const auto* const form = std::find_if(forms.begin(), forms.end(),
                                          [&](const Form& row) { return (first & row.mask) == row.mark; });
    if (form == forms.end() || text.size() < form->length) {
        return {};
    }
    char32_t code = first & static_cast<std::uint8_t>(~form->mask);
    for (const char next : text.substr(1, form->length - 1)) {
        if (!continues(next)) {
            return {};
        }
        code = (code << 6U) | (byteOf(next) & 0x3FU);
    }
    return code >= form->smallest && isCharacter(code) ? Utf8Character{code, form->length} : Utf8Character{};
}

std::string validUtf8(std::string_view text) {
    constexpr std::string_view replacement = "\xEF\xBF\xBD";
    std::string valid;
    valid.reserve(text.size());
    while (!text.empty()) {
        const std::size_t length = firstCharacter(text).length;
        valid += length == 0 ? replacement : text.substr(0, length);
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return valid;
}

std::string_view validUtf8(std::string_view text, std::string& buffer) {
    if (std::ranges::none_of(text, [](char character) { return byteOf(character) >= 0x80; })) {
        return text;
    }
    buffer = validUtf8(text);
    return buffer;
}

}  // namespace Report

#include "SafeText.hpp"

#include <array>
#include <cstdint>
#include <cstdio>

#include "Utf8.hpp"

namespace Report {
namespace {

constexpr std::string_view replacementCharacter = "\xEF\xBF\xBD";

/// Whether a terminal would act on this character instead of showing it, or show what follows in another
/// order.
bool isActive(char32_t code) {
    const bool control = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool separator = code == 0x2028 || code == 0x2029;
    const bool direction = code == 0x061C || code == 0x200E || code == 0x200F ||
                           (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    return control || separator || direction;
}

/// A byte as \xNN, a character beyond 8 bits as \uNNNN.
std::string escaped(char32_t code) {
    std::array<char, 8> text{};
    std::snprintf(text.data(), text.size(), code <= 0xFF ? "\\x%02x" : "\\u%04x",
                  static_cast<unsigned>(code));
    return text.data();
}

/// Calls `valid` with each character of the text and `invalid` with each byte that belongs to none.
template <typename Valid, typename Invalid>
void walk(std::string_view bytes, Valid valid, Invalid invalid) {
    while (!bytes.empty()) {
        const Utf8Character character = firstCharacter(bytes);
        if (character.length == 0) {
            invalid(static_cast<std::uint8_t>(bytes.front()));
            bytes.remove_prefix(1);
        } else {
            valid(character.code, bytes.substr(0, character.length));
            bytes.remove_prefix(character.length);
        }
    }
}

}  // namespace

std::string forTerminal(std::string_view bytes, bool lines) {
    std::string safe;
    safe.reserve(bytes.size());
    walk(
        bytes,
        [&](char32_t code, std::string_view character) {
            if (code == '\t' || (lines && code == '\n') || !isActive(code)) {
                safe += character;
            } else {
                safe += escaped(code);
            }
        },
        [&](std::uint8_t byte) { safe += escaped(byte); });
    return safe;
}

std::string validUtf8(std::string_view bytes) {
    std::string valid;
    valid.reserve(bytes.size());
    walk(
        bytes, [&](char32_t, std::string_view character) { valid += character; },
        [&](std::uint8_t) { valid += replacementCharacter; });
    return valid;
}

}  // namespace Report

#include "SafeText.hpp"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>

#include "Utf8.hpp"

namespace Report {
namespace {

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

}  // namespace

std::string forTerminal(std::string_view bytes, bool lines) {
    std::string safe;
    safe.reserve(bytes.size());
    while (!bytes.empty()) {
        const Utf8Character character = firstCharacter(bytes);
        if (character.length == 0) {
            safe += escaped(static_cast<std::uint8_t>(bytes.front()));
        } else if (character.code == '\t' || (lines && character.code == '\n') || !isActive(character.code)) {
            safe += bytes.substr(0, character.length);
        } else {
            safe += escaped(character.code);
        }
        bytes.remove_prefix(std::max<std::size_t>(character.length, 1));
    }
    return safe;
}

}  // namespace Report

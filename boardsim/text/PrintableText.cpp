#include "PrintableText.hpp"

namespace Boardsim {

std::string printable(std::string_view bytes, std::size_t longest) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char each : bytes.substr(0, longest)) {
        const auto byte = static_cast<unsigned char>(each);
        if (byte >= ' ' && byte <= '~') {
            text += each;
        } else {
            text += "\\x";
            text += digits[byte >> 4U];
            text += digits[byte & 0xfU];
        }
    }
    return text + (bytes.size() > longest ? "..." : "");
}

}  // namespace Boardsim

#include "PrintableText.hpp"

namespace Boardsim {

std::string printable(std::string_view bytes, std::size_t longest) {
    std::string text;
    for (const char& each : bytes.substr(0, longest)) {
        if (each >= ' ' && each <= '~') {
            text += each;
        } else {
            text += "\\x" + hexText({&each, 1});
        }
    }
    return text + (bytes.size() > longest ? "..." : "");
}

std::string hexText(std::string_view bytes) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char each : bytes) {
        const auto byte = static_cast<unsigned char>(each);
        text += digits[byte >> 4U];
        text += digits[byte & 0xfU];
    }
    return text;
}

}  // namespace Boardsim

#include "DumpText.hpp"

#include <array>
#include <cstdio>

namespace {

std::string lineOf(std::size_t offset, std::string_view bytes) {
    std::array<char, 16> text{};
    std::string columns;
    std::string characters;
    for (const char character : bytes) {
        std::snprintf(text.data(), text.size(), "%02X ", static_cast<unsigned>(character) & 0xffU);
        columns += text.data();
        characters += character >= ' ' && character <= '~' ? character : '.';
    }
    std::snprintf(text.data(), text.size(), " %04X", static_cast<unsigned>(offset));
    return text.data() + ("  " + columns) + " '" + characters + "'\n";
}

}  // namespace

std::string dumpText(std::string_view bytes) {
    std::string text;
    for (std::size_t offset = 0; offset < bytes.size(); offset += 16) {
        text += lineOf(offset, bytes.substr(offset, 16));
    }
    return text;
}

std::string patternOf(std::size_t size) {
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i) {
        bytes += static_cast<char>((i + i / 256) % 256);
    }
    return bytes;
}

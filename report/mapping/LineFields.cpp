#include "LineFields.hpp"

#include <algorithm>

#include "ByteClass.hpp"

namespace Report {

std::string_view takeField(std::string_view& line) {
    constexpr std::string_view blanks = " \t";
    line.remove_prefix(std::min(line.find_first_not_of(blanks), line.size()));
    const std::string_view field = line.substr(0, line.find_first_of(blanks));
    line.remove_prefix(field.size());
    return field;
}

bool isNameByte(char byte) {
    return isOf(byte, alnumByte | joinerByte | highByte) || byte == '.';
}

bool isName(std::string_view text) {
    return !text.empty() && std::ranges::all_of(text, isNameByte);
}

}  // namespace Report

#pragma once

#include <array>
#include <cstdint>

namespace Report {

/// What a byte can be part of. The classes are bits of one table, since the scan looks at every byte of a
/// package.
enum ByteClass : std::uint8_t {
    digitByte = 1,
    hexLetterByte = 2,    ///< a to f, in either case
    otherLetterByte = 4,  ///< g to z, in either case
    joinerByte = 8,       ///< `-` and `_`, which belong to words
    colonByte = 16,
    highByte = 32,  ///< part of a character beyond ASCII

    hexByte = digitByte | hexLetterByte,
    letterByte = hexLetterByte | otherLetterByte,
    alnumByte = digitByte | letterByte,
    tokenByte = alnumByte | joinerByte | colonByte | highByte,
};

constexpr std::array<std::uint8_t, 256> byteClasses = [] {
    std::array<std::uint8_t, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        const unsigned lower = byte | 0x20U;
        const bool ascii = byte < 0x80;
        if (byte >= '0' && byte <= '9') {
            table[byte] = digitByte;
        } else if (ascii && lower >= 'a' && lower <= 'z') {
            table[byte] = lower <= 'f' ? hexLetterByte : otherLetterByte;
        } else if (byte == '-' || byte == '_') {
            table[byte] = joinerByte;
        } else if (byte == ':') {
            table[byte] = colonByte;
        } else if (!ascii) {
            table[byte] = highByte;
        }
    }
    return table;
}();

constexpr std::uint8_t classOf(char byte) {
    return byteClasses[static_cast<std::uint8_t>(byte)];
}

/// Whether the byte is of one of `classes`.
constexpr bool isOf(char byte, unsigned classes) {
    return (classOf(byte) & classes) != 0;
}

/// The value of a hexadecimal digit.
constexpr unsigned hexValue(char digit) {
    return isOf(digit, digitByte) ? static_cast<unsigned>(digit - '0')
                                  : (static_cast<unsigned>(digit) | 0x20U) - 'a' + 10U;
}

}  // namespace Report

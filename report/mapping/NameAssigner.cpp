#include "NameAssigner.hpp"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

#include "ByteClass.hpp"
#include "Letters.hpp"
#include "Utf8.hpp"

namespace Report {

namespace {

/// Small letters, or digits, that replace each other: `count` characters, `step` apart.
struct Alphabet {
    char32_t first;
    std::uint32_t step;
    std::uint32_t count;
};

constexpr Alphabet digits{'0', 1, 10};
constexpr Alphabet hundreds{'3', 1, 7};  ///< that are more than an octet, whatever digits follow
constexpr Alphabet hexLetters{'a', 1, 6};
constexpr Alphabet otherLetters{'g', 1, 20};
constexpr Alphabet latin1{0xe0, 1, 23};                 ///< two bytes, without the division sign behind them
constexpr Alphabet latinAdditional{0x1e01, 2, 75};      ///< three bytes, one column
constexpr Alphabet ideographs{0x4e00, 1, 0x5000};       ///< three bytes, two columns
constexpr Alphabet rareIdeographs{0x20000, 1, 0xa000};  ///< four bytes

/// Whether a character of three bytes needs two columns.
bool isWide(char32_t code) {
    struct Block {
        char32_t first;
        char32_t last;
    };
    constexpr std::array wideBlocks{Block{0x1100, 0x115f}, Block{0x2e80, 0xa4cf}, Block{0xac00, 0xd7a3},
                                    Block{0xf900, 0xfaff}, Block{0xff01, 0xff60}};
    return std::ranges::any_of(wideBlocks,
                               [code](Block block) { return block.first <= code && code <= block.last; });
}

Alphabet alphabetOf(Utf8Character character) {
    switch (character.length) {
        case 1:
            break;
        case 2:
            return latin1;
        case 3:
            return isWide(character.code) ? ideographs : latinAdditional;
        default:
            return rareIdeographs;
    }
    const auto byte = static_cast<char>(character.code);
    if (isOf(byte, letterByte)) {
        return isOf(byte, hexLetterByte) ? hexLetters : otherLetters;
    }
    return isOf(byte, digitByte) ? digits : Alphabet{character.code, 0, 1};
}

/// Whether a number of three digits that is too large for an octet begins at `place`.
bool beginsLargeNumber(std::string_view name, std::size_t place) {
    constexpr std::string_view largestOctet = "255";
    const auto isDigitAt = [name](std::size_t at) { return at < name.size() && isOf(name[at], digitByte); };
    const std::string_view number = name.substr(place, largestOctet.size());
    return !(place > 0 && isDigitAt(place - 1)) && isDigitAt(place) && isDigitAt(place + 1) &&
           isDigitAt(place + 2) && !isDigitAt(place + 3) && number > largestOctet;
}

}  // namespace

std::optional<std::string> chooseName(std::string_view name, Random& random,
                                      const std::function<bool(std::string_view)>& isFree) {
    constexpr std::uint64_t mostTries = std::uint64_t{1} << 20;
    std::vector<Alphabet> alphabets;
    std::vector<std::size_t> sizes;
    for (std::size_t place = 0; place < name.size();) {
        const Utf8Character character = firstCharacter(name.substr(place));
        alphabets.push_back(beginsLargeNumber(name, place) ? hundreds : alphabetOf(character));
        sizes.push_back(alphabets.back().count);
        place += character.length;
    }
    Odometer odometer(sizes, mostTries, random);
    do {
        std::string word;
        for (std::size_t index = 0; index < alphabets.size(); ++index) {
            const Alphabet& alphabet = alphabets[index];
            word += utf8Of(alphabet.first + alphabet.step * static_cast<char32_t>(odometer.choices()[index]));
        }
        if (isFree(word)) {
            return word;
        }
    } while (odometer.advance());
    return std::nullopt;
}

}  // namespace Report

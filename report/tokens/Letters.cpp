#include "Letters.hpp"

#include <algorithm>
#include <clocale>
#include <cstdint>
#include <cwctype>
#include <functional>

#include "ByteClass.hpp"
#include "Utf8.hpp"

namespace Report {

namespace {

/// The classes of Unicode's characters, whatever the user's locale.
locale_t unicode() {
    static const locale_t locale = [] {
        const locale_t utf8 = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
        return utf8 != nullptr ? utf8 : newlocale(LC_CTYPE_MASK, "C", nullptr);
    }();
    return locale;
}

std::size_t lengthOf(char32_t code) {
    return code < 0x80 ? 1 : code < 0x800 ? 2 : code < 0x10000 ? 3 : 4;
}

char32_t otherCase(char32_t code, bool upper) {
    const auto character = static_cast<wint_t>(code);
    const auto other =
        static_cast<char32_t>(upper ? towupper_l(character, unicode()) : towlower_l(character, unicode()));
    const auto back = static_cast<char32_t>(upper ? towlower_l(static_cast<wint_t>(other), unicode())
                                                  : towupper_l(static_cast<wint_t>(other), unicode()));
    return back == code && lengthOf(other) == lengthOf(code) ? other : code;
}

char32_t lower(char32_t code) {
    return otherCase(code, false);
}
char32_t upper(char32_t code) {
    return otherCase(code, true);
}

/// The first character. A byte that is not UTF-8 counts as a character.
Utf8Character characterAt(std::string_view text) {
    const Utf8Character character = firstCharacter(text);
    return character.length > 0 ? character : Utf8Character{.length = 1};
}

char smallLetter(char byte) {
    return static_cast<char>(isOf(byte, letterByte) ? byte | 0x20 : byte);
}

}  // namespace

bool isWordCharacter(char32_t code) {
    return iswalnum_l(static_cast<wint_t>(code), unicode()) != 0;
}

bool isWord(std::string_view text) {
    bool named = false;
    while (!text.empty()) {
        const Utf8Character character = firstCharacter(text);
        const bool ascii = character.code < 0x80;
        const bool letter = ascii ? isOf(text.front(), alnumByte) : isWordCharacter(character.code);
        if (character.length == 0 || !(letter || isOf(text.front(), joinerByte))) {
            return false;
        }
        named = named || letter;
        text.remove_prefix(character.length);
    }
    return named;
}

void fold(std::string_view word, std::string& result) {
    result = word;
    unsigned kinds = 0;
    for (char& byte : result) {
        kinds |= classOf(byte);
        byte = smallLetter(byte);
    }
    if ((kinds & highByte) == 0) {
        return;
    }
    for (std::size_t place = 0; place < result.size();) {
        const Utf8Character character = characterAt(std::string_view(result).substr(place));
        if (character.length > 1) {
            result.replace(place, character.length, utf8Of(lower(character.code)));
        }
        place += character.length;
    }
}

std::string folded(std::string_view word) {
    std::string result;
    fold(word, result);
    return result;
}

std::size_t foldedHash(std::string_view word) {
    constexpr std::uint64_t multiplier = 0x100000001b3;
    std::uint64_t hash = 0xcbf29ce484222325;
    unsigned kinds = 0;
    for (const char byte : word) {
        kinds |= classOf(byte);
        hash = (hash ^ static_cast<unsigned char>(smallLetter(byte))) * multiplier;
    }
    if ((kinds & highByte) != 0) {
        return std::hash<std::string>()(folded(word));
    }
    return static_cast<std::size_t>(hash ^ (hash >> 32U));
}

bool sameCharacterLengths(std::string_view one, std::string_view other) {
    if (one.size() != other.size()) {
        return false;
    }
    std::size_t place = 0;
    while (place < one.size()) {
        const std::size_t length = characterAt(one.substr(place)).length;
        if (length != characterAt(other.substr(place)).length) {
            return false;
        }
        place += length;
    }
    return true;
}

bool rewriteWord(std::span<char> text, std::string_view word) {
    const std::string_view before{text.data(), text.size()};
    if (!sameCharacterLengths(before, word)) {
        return false;
    }
    std::string result;
    while (result.size() < word.size()) {
        const char32_t old = characterAt(before.substr(result.size())).code;
        const char32_t replacement = characterAt(word.substr(result.size())).code;
        result += utf8Of(old == lower(old) ? replacement : upper(replacement));
    }
    std::ranges::copy(result, text.begin());
    return true;
}

std::string utf8Of(char32_t code) {
    const auto tail = [code](unsigned shift) { return static_cast<char>(0x80U | ((code >> shift) & 0x3fU)); };
    switch (lengthOf(code)) {
        case 1:
            return {static_cast<char>(code)};
        case 2:
            return {static_cast<char>(0xc0U | (code >> 6U)), tail(0)};
        case 3:
            return {static_cast<char>(0xe0U | (code >> 12U)), tail(6), tail(0)};
        default:
            return {static_cast<char>(0xf0U | (code >> 18U)), tail(12), tail(6), tail(0)};
    }
}

}  // namespace Report

// Words of the command line and of files that stand for numbers, against a second reader.

#include <cctype>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "EnableWord.hpp"
#include "FuzzInput.hpp"
#include "FuzzTarget.hpp"
#include "Number.hpp"
#include "Trim.hpp"
#include "Words.hpp"

namespace {

using Fuzz::require;
using Korvel::NumberError;

/// The digits at the start of a text.
struct Digits {
    bool found = false;
    bool negative = false;
    bool atEnd = false;           ///< nothing follows
    std::uint64_t magnitude = 0;  ///< at most `tooLarge`
};

constexpr std::uint64_t tooLarge = std::uint64_t{1} << 63U;

std::optional<unsigned> digitOf(char character, unsigned base) {
    constexpr unsigned ten = 10;
    const auto byte = static_cast<unsigned char>(character);
    unsigned value = base;
    if (std::isdigit(byte) != 0) {
        value = static_cast<unsigned>(character - '0');
    } else if (std::isalpha(byte) != 0) {
        value = static_cast<unsigned>(std::tolower(byte) - 'a') + ten;
    }
    return value < base ? std::optional(value) : std::nullopt;
}

bool hasHexPrefix(const std::string& text, std::size_t at) {
    constexpr unsigned hexadecimal = 16;
    return at + 2 < text.size() && text[at] == '0' && (text[at + 1] == 'x' || text[at + 1] == 'X') &&
           digitOf(text[at + 2], hexadecimal);
}

/// `base` is 8, 10 or 16; 16 allows the prefix 0x.
Digits digitsOf(const std::string& text, unsigned base) {
    Digits digits;
    std::size_t at = 0;
    while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at])) != 0) {
        ++at;
    }
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) {
        digits.negative = text[at++] == '-';
    }
    at += base == 16 && hasHexPrefix(text, at) ? 2 : 0;
    for (std::optional<unsigned> digit; at < text.size() && (digit = digitOf(text[at], base)); ++at) {
        digits.found = true;
        const bool fits = digits.magnitude < tooLarge / base;
        digits.magnitude = fits ? digits.magnitude * base + *digit : tooLarge;
    }
    digits.atEnd = at == text.size();
    return digits;
}

/// C notation: the base after white space and signs.
unsigned baseOf(const std::string& text) {
    std::size_t at = 0;
    while (at < text.size() && std::isspace(static_cast<unsigned char>(text[at])) != 0) {
        ++at;
    }
    while (at < text.size() && (text[at] == '-' || text[at] == '+')) {
        ++at;
    }
    if (at == text.size() || text[at] != '0') {
        return 10;
    }
    return at + 1 < text.size() && std::tolower(static_cast<unsigned char>(text[at + 1])) == 'x' ? 16 : 8;
}

/// Compares the result of a parser with what the second reader found.
template <typename Value>
void compare(const Digits& digits, NumberError error, Value value) {
    constexpr auto most = static_cast<std::uint64_t>(std::numeric_limits<Value>::max());
    const std::uint64_t limit =
        digits.negative ? (std::numeric_limits<Value>::min() < 0 ? most + 1 : 0) : most;
    const NumberError expected = !digits.found              ? NumberError::noDigits
                                 : digits.magnitude > limit ? NumberError::outOfRange
                                                            : NumberError::none;
    require(error == expected, "a number is recognised");
    const std::uint64_t number = digits.negative ? 0 - digits.magnitude : digits.magnitude;
    require(error != NumberError::none || value == static_cast<Value>(number), "a number has its value");
}

void checkNumbers(const std::string& text) {
    int number = 0;
    const NumberError error = Korvel::parseNumber(text, number);
    compare(digitsOf(text, 10), error, number);
    for (const int base : {0, 10, 16}) {
        std::uint32_t value = 0;
        const NumberError result = Korvel::parseUnsigned(text, base, value);
        compare(digitsOf(text, base == 0 ? baseOf(text) : static_cast<unsigned>(base)), result, value);
    }
    unsigned long whole = 0;
    const bool accepted = Korvel::parseWholeNumber(text, whole) == NumberError::none;
    const Digits digits = digitsOf(text, 10);
    require(!accepted || (digits.found && digits.atEnd), "a whole number has nothing after it");
    const unsigned long value = digits.negative ? 0 - digits.magnitude : digits.magnitude;
    require(!accepted || digits.magnitude == tooLarge || whole == value, "a whole number has its value");
}

void checkWords(const std::string& text) {
    std::string trimmed = text;
    trim(trimmed);
    std::string again = trimmed;
    trim(again);
    require(again == trimmed && text.find(trimmed) != std::string::npos, "trimming takes from the ends");
    const std::string first = Korvel::getNthTokenFromString(text, 1);
    require(trimmed.starts_with(first) && first.empty() == trimmed.empty(), "the first word comes first");
    require(!Korvel::parseEnableWord(text) || (first == text && text.size() <= 7), "words are short");
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Fuzz::FuzzInput input(Fuzz::textOf(data, size));
    const std::string word(input.textUntil('\0'));  // an argument has no zero byte
    checkNumbers(word);
    checkWords(word);
    return 0;
}

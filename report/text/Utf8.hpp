#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Report {

/// A character at the beginning of a text.
struct Utf8Character {
    char32_t code = 0;
    std::size_t length = 0;  ///< bytes; 0 if the text does not begin with valid UTF-8
};

/// Decodes the first character. Overlong forms, surrogates and codes beyond U+10FFFF are not valid. Neither
/// is an incomplete character at the end of the text.
Utf8Character firstCharacter(std::string_view text);

/// Text from a package as valid UTF-8: each invalid byte becomes U+FFFD. Everything else remains.
std::string validUtf8(std::string_view text);

/// As above, without a copy if the text is ASCII: then it is returned, else what `buffer` holds afterwards.
std::string_view validUtf8(std::string_view text, std::string& buffer);

}  // namespace Report

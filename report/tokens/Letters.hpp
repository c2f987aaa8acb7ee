#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace Report {

/// Whether a character beyond ASCII is a letter or a digit, so that it belongs to a word.
bool isWordCharacter(char32_t code);

/// Whether a text is one word: letters and digits in valid UTF-8, `-` and `_`, at least one letter or digit.
bool isWord(std::string_view text);

/// Writes `word` with small letters into `result`, whose memory is used again. A letter changes only if its
/// other form has as many bytes and leads back to it. So the length remains, and the case can be restored.
void fold(std::string_view word, std::string& result);

std::string folded(std::string_view word);

/// A hash of the folded word.
std::size_t foldedHash(std::string_view word);

/// Whether two words have the same number of characters, and each two of them the same number of bytes.
bool sameCharacterLengths(std::string_view one, std::string_view other);

/// Writes `word`, which is folded, over `text`. Each letter takes the case of the letter that it replaces.
/// Returns false, and changes nothing, if sameCharacterLengths() is false.
[[nodiscard]] bool rewriteWord(std::span<char> text, std::string_view word);

/// A character in UTF-8.
std::string utf8Of(char32_t code);

}  // namespace Report

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Report {

/// A word that a user wants to have replaced.
struct ListedWord {
    std::size_t line = 0;  ///< counted from 1
    std::string name;      ///< folded
};

/// Reads a list of words: UTF-8, a word a line. Blanks around a word, blank lines and lines that begin with
/// `#` are ignored. Throws std::invalid_argument with the line's number and the reason for a line that is no
/// word.
std::vector<ListedWord> parseWordList(std::string_view text);

}  // namespace Report

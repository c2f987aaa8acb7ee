#include "WordList.hpp"

#include <algorithm>
#include <stdexcept>

#include "Letters.hpp"
#include "TokenScanner.hpp"
#include "ValueLine.hpp"

namespace Report {

namespace {

constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";

}  // namespace

std::vector<ListedWord> parseWordList(std::string_view text) {
    std::vector<ListedWord> words;
    if (text.starts_with(byteOrderMark)) {
        text.remove_prefix(byteOrderMark.size());
    }
    for (std::size_t number = 1; !text.empty(); ++number) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = trimLine(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
        if (line.empty() || line.front() == '#') {
            continue;
        }
        if (!isWord(line) || line.size() > longestWord) {
            throw std::invalid_argument("line " + std::to_string(number) +
                                        ": not one word of at most 255 bytes: letters, digits, - and _");
        }
        words.push_back({.line = number, .name = folded(line)});
    }
    return words;
}

}  // namespace Report

#include "ShellWords.hpp"

#include <string_view>

namespace {

constexpr std::string_view plain = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789%+,-./:=@_";

std::string quoted(const std::string& word) {
    if (!word.empty() && word.find_first_not_of(plain) == std::string::npos) {
        return word;
    }
    std::string text = "'";
    for (const char each : word) {
        text += each == '\'' ? "'\\''" : std::string(1, each);
    }
    return text + "'";
}

}  // namespace

std::string shellLine(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : " ") + quoted(word);
    }
    return line;
}

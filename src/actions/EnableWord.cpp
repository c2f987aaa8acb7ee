#include "EnableWord.hpp"

#include <algorithm>
#include <array>

namespace Korvel {
namespace {

struct EnableWord {
    std::string_view word;
    bool enable;
};

constexpr std::array enableWords{
    EnableWord{"enable", true},   EnableWord{"e", true},  EnableWord{"en", true},
    EnableWord{"disable", false}, EnableWord{"d", false}, EnableWord{"dis", false},
};

}  // namespace

std::optional<bool> parseEnableWord(std::string_view word) {
    const auto* const row = std::ranges::find(enableWords, word, &EnableWord::word);
    return row == enableWords.end() ? std::nullopt : std::optional(row->enable);
}

}  // namespace Korvel

#include "EnableWord.hpp"

#include <algorithm>
#include <array>

namespace Korvel {
namespace {

struct SwitchWord {
    std::string_view word;
    bool enable;
};

constexpr std::array switchWords{
    SwitchWord{"enable", true},   SwitchWord{"e", true},  SwitchWord{"en", true},
    SwitchWord{"disable", false}, SwitchWord{"d", false}, SwitchWord{"dis", false},
};

}  // namespace

std::optional<bool> parseEnableWord(std::string_view word) {
    const auto* const row = std::ranges::find(switchWords, word, &SwitchWord::word);
    return row == switchWords.end() ? std::nullopt : std::optional(row->enable);
}

}  // namespace Korvel

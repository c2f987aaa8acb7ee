#include "TextPattern.hpp"

#include <array>
#include <cstddef>

#include <re2/re2.h>

namespace Report {
namespace {

RE2::Options optionsFor(TextPattern::Mode mode) {
    RE2::Options options(RE2::Quiet);
    if (mode == TextPattern::Mode::anyCase) {
        options.set_case_sensitive(false);
        options.set_encoding(RE2::Options::EncodingLatin1);
    }
    return options;
}

re2::StringPiece pieceOf(std::string_view text) {
    return {text.data(), text.size()};
}

}  // namespace

struct TextPattern::Compiled {
    Compiled(const std::string& expression, Mode mode) : pattern(expression, optionsFor(mode)) {}

    RE2 pattern;
};

TextPattern::TextPattern(const std::string& expression, Mode mode)
    : compiled(std::make_shared<Compiled>(expression, mode)) {
    if (!compiled->pattern.ok()) {
        throw PatternError(compiled->pattern.error());
    }
}

bool TextPattern::fits(std::string_view text) const {
    return RE2::PartialMatch(pieceOf(text), compiled->pattern);
}

bool TextPattern::fitsWhole(std::string_view text) const {
    return RE2::FullMatch(pieceOf(text), compiled->pattern);
}

std::string TextPattern::without(std::string_view text) const {
    std::string rest(text);
    RE2::GlobalReplace(&rest, compiled->pattern, " ");
    return rest;
}

bool TextPattern::split(std::string_view text, std::vector<std::string_view>& groups) const {
    const int count = 1 + compiled->pattern.NumberOfCapturingGroups();
    std::vector<re2::StringPiece> found(static_cast<std::size_t>(count));
    if (!compiled->pattern.Match(pieceOf(text), 0, text.size(), RE2::ANCHOR_BOTH, found.data(), count)) {
        return false;
    }
    groups.clear();
    for (const re2::StringPiece& group : found) {
        groups.emplace_back(group.data(), group.size());
    }
    return true;
}

std::size_t TextPattern::groupNamed(const std::string& name) const {
    const auto& names = compiled->pattern.NamedCapturingGroups();
    const auto found = names.find(name);
    return found == names.end() ? 0 : static_cast<std::size_t>(found->second);
}

std::string TextPattern::expand(std::string_view text, const std::string& form) const {
    constexpr std::size_t groups = 10;  // \0 is all of the text
    std::array<re2::StringPiece, groups> found;
    std::string expanded;
    const int used = 1 + RE2::MaxSubmatch(form);
    if (compiled->pattern.Match(pieceOf(text), 0, text.size(), RE2::ANCHOR_BOTH, found.data(), used)) {
        compiled->pattern.Rewrite(&expanded, form, found.data(), used);
    }
    return expanded;
}

bool TextPattern::canExpand(const std::string& form) const {
    std::string error;
    return compiled->pattern.CheckRewriteString(form, &error);
}

}  // namespace Report

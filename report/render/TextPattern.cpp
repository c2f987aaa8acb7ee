#include "TextPattern.hpp"

#include <re2/re2.h>

namespace Report {

struct TextPattern::Compiled {
    explicit Compiled(const std::string& expression) : pattern(expression, RE2::Quiet) {}

    RE2 pattern;
};

TextPattern::TextPattern(const std::string& expression) : compiled(std::make_shared<Compiled>(expression)) {
    if (!compiled->pattern.ok()) {
        throw PatternError(compiled->pattern.error());
    }
}

bool TextPattern::fits(std::string_view text) const {
    return RE2::PartialMatch({text.data(), text.size()}, compiled->pattern);
}

}  // namespace Report

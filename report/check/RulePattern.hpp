#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "TextPattern.hpp"

namespace Report {

/// A pattern of a rule, with what does not count: "0 errors" is no error. It is compiled when it is needed:
/// most rules find nothing.
class RulePattern {
public:
    /// Both are valid patterns.
    RulePattern(std::string expression, std::optional<std::string> exception)
        : pattern(std::move(expression)), except(std::move(exception)) {}

    /// Whether the pattern, which fits the text, still fits without what does not count.
    bool counts(std::string_view text) {
        return !except.expression || !except.compiled().fits(text) ||
               pattern.compiled().fits(except.compiled().without(text));
    }

    /// `form` with the groups of the text, which the pattern fits as a whole.
    std::string expand(std::string_view text, const std::string& form) {
        return pattern.compiled().expand(text, form);
    }

private:
    struct Lazy {
        explicit Lazy(std::optional<std::string> text) : expression(std::move(text)) {}

        const TextPattern& compiled() {
            if (!result) {
                result.emplace(*expression, TextPattern::Mode::anyCase);
            }
            return *result;
        }

        std::optional<std::string> expression;
        std::optional<TextPattern> result;
    };

    Lazy pattern;
    Lazy except;
};

}  // namespace Report

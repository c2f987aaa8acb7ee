#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace Report {

/// A regular expression that is wrong. what() says why.
class PatternError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

/// A regular expression in the syntax of RE2, whose time grows only linearly with the text.
class TextPattern {
public:
    /// `anyCase` is for rules: letters match in both cases, and bytes that are not UTF-8 match as characters.
    enum class Mode : bool { exact, anyCase };

    /// Throws PatternError.
    explicit TextPattern(const std::string& expression, Mode mode = Mode::exact);

    /// Whether it fits anywhere in the text.
    bool fits(std::string_view text) const;

    /// Whether it fits the whole text.
    bool fitsWhole(std::string_view text) const;

    /// The text without what fits: a blank is in its place.
    std::string without(std::string_view text) const;

    /// Splits a text that it fits as a whole: `groups` gets all of the text, then each group. A group that
    /// took no part is empty. Returns false for another text.
    bool split(std::string_view text, std::vector<std::string_view>& groups) const;

    /// The index of a named group, or 0 if there is none.
    std::size_t groupNamed(const std::string& name) const;

    /// `form` with the text's groups in place of \1 to \9. The expression must fit the whole text.
    std::string expand(std::string_view text, const std::string& form) const;

    /// Whether `form` uses only groups that the expression has.
    bool canExpand(const std::string& form) const;

private:
    struct Compiled;

    std::shared_ptr<const Compiled> compiled;
};

}  // namespace Report

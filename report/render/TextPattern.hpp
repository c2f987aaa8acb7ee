#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

namespace Report {

/// A regular expression that is wrong. what() says why.
class PatternError : public std::invalid_argument {
public:
    using std::invalid_argument::invalid_argument;
};

/// A regular expression in the syntax of RE2, whose time grows only linearly with the text.
class TextPattern {
public:
    /// Throws PatternError.
    explicit TextPattern(const std::string& expression);

    /// Whether it fits anywhere in the text.
    bool fits(std::string_view text) const;

private:
    struct Compiled;

    std::shared_ptr<const Compiled> compiled;
};

}  // namespace Report

#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "LogForms.hpp"
#include "Package.hpp"

namespace Report {

/// A rule file that is wrong. what() is one line: file, line and reason.
class RuleError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The rules that find what needs attention in a package. Rules are data, in TOML: docs and comments in
/// report/rules/*.toml describe the form.
class RuleSet {
public:
    /// The shipped rules.
    RuleSet();
    RuleSet(const RuleSet&) = delete;
    RuleSet& operator=(const RuleSet&) = delete;
    RuleSet(RuleSet&&) noexcept;
    RuleSet& operator=(RuleSet&&) noexcept;
    ~RuleSet();

    /// Adds the rules of a TOML text. A rule with an identifier that exists replaces the earlier one. Throws
    /// RuleError; then nothing was added. `file` is for the message.
    void add(const std::string& text, const std::string& file);

    /// The rule as text for people (--explain), or an empty text if no rule has this identifier.
    std::string explain(std::string_view identifier) const;
    std::vector<std::string> identifiers() const;

    /// The forms of log lines that the rules describe, for LoadOptions.
    std::shared_ptr<const LogForms> logForms() const;

    /// Adds the findings of a judged package and of its nested packages, by severity. With texts that were
    /// not kept, only the rules on states and values apply. Lines are read up to `maxLine` bytes.
    void apply(Package& package, std::size_t maxLine) const;

    /// Whether a rule names this value: show lists such values first.
    bool names(const Value& value) const;

private:
    struct Rules;

    std::unique_ptr<Rules> rules;
};

}  // namespace Report

#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace Report {

/// Many regular expressions that are searched at once, in both cases, as with TextPattern::Mode::anyCase.
class PatternSet {
public:
    enum class Fit : bool { anywhere, whole };

    /// Throws PatternError.
    PatternSet(std::span<const std::string> expressions, Fit fit);
    PatternSet(const PatternSet&) = delete;
    PatternSet& operator=(const PatternSet&) = delete;
    PatternSet(PatternSet&&) noexcept;
    PatternSet& operator=(PatternSet&&) noexcept;
    ~PatternSet();

    /// Replaces `found` by the indices of the expressions that fit the text, in ascending order.
    void find(std::string_view text, std::vector<std::size_t>& found) const;

private:
    struct Compiled;

    std::unique_ptr<Compiled> compiled;
};

}  // namespace Report

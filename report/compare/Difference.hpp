#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "LogChange.hpp"
#include "Package.hpp"
#include "TextChange.hpp"
#include "ValueChange.hpp"

namespace Report {

/// A part that came or went, or whose state or text differs.
struct PartChange {
    enum class What : std::uint8_t {
        came,   ///< only in the later package
        went,   ///< only in the earlier package
        state,  ///< the state differs, the text can differ as well
        text,   ///< lines that are neither values nor log entries differ
    };

    std::string name;
    What what = What::text;
    const Part* before = nullptr;  ///< also a missing part that the earlier package should have
    const Part* after = nullptr;
    TextChange text = {};
};

/// What differs between two packages. Times of members do not count. Points into the packages, which must
/// outlive it.
struct Difference {
    const Package* before = nullptr;
    const Package* after = nullptr;
    std::size_t maxLine = 0;          ///< longer lines were cut to this number of bytes
    std::optional<double> seconds;    ///< from the first to the second package; unknown if a clock was unset
    std::vector<PartChange> parts;    ///< by name
    std::vector<ValueChange> values;  ///< by part, in the order of the later package
    std::vector<LogChange> logs;      ///< by name
    std::vector<std::string>
        notCompared;  ///< names of parts that a package has only in part, or may have lost
    /// Of the nested packages, at every depth, that differ or have parts that were not compared. Theirs are
    /// empty.
    std::vector<Difference> nested;
    std::string
        name;  ///< of the nested package: its member, after those of the packages around it; else empty

    /// Whether nothing that was compared differs.
    bool empty() const;
    /// Whether a part of these packages, or of a nested one, was not compared.
    bool hasSkipped() const;
};

/// Compares two judged packages that were loaded with all texts. A part that was not read to its end in one
/// of them is compared only if both have the same bytes of it. A part that is not in a cut, altered or not
/// fully read package did not go: it is not compared.
Difference compare(const Package& before, const Package& after, std::size_t maxLine);

/// The exit status of diff: 0 the same, 1 different, 2 if something was not compared.
int exitStatusOf(const Difference& difference);

}  // namespace Report

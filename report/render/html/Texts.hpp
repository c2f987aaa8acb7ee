#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <vector>

#include "View.hpp"

namespace Report::Html {

/// The most bytes that each text may use, so that all of them together use at most `bytes`. Texts that are
/// shorter leave their share to the others.
std::uint64_t shareOfTexts(const std::vector<View>& views, std::uint64_t bytes);

/// Writes the texts of a package's parts, each folded in. Of a text that is longer than `most` bytes, writes
/// the first and the last half of them.
void writeTexts(std::ostream& out, const View& view, std::uint64_t most);

}  // namespace Report::Html

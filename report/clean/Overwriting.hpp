#pragma once

#include <string>
#include <vector>

namespace Report {

/// Whether a result that is written to `output` would replace one of the files in `inputs`. Links and other
/// spellings of a path make no difference, and a file need not exist yet. "-" in `inputs` is standard input.
/// A device or a pipe as `output` replaces nothing.
bool replacesAny(const std::string& output, const std::vector<std::string>& inputs);

}  // namespace Report

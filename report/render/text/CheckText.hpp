#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "Package.hpp"
#include "TextWriter.hpp"

namespace Report {

/// The name of a package as it is shown.
std::string shownName(std::string_view name);

/// The line with which each result begins: "netfp_logs.tgz: incomplete". For a nested package, `outer` names
/// the packages around it.
void writeVerdict(TextWriter& text, const Package& package, const std::string& outer);

/// All that check prints.
void writeCheck(TextWriter& text, const Package& package, const std::string& outer);

/// The cause of a state in words, with how certain it is; nothing without a cause.
void writeCause(TextWriter& text, const std::string& cause, std::optional<Certainty> certainty,
                std::size_t margin);

/// Lines that support a statement, at column `margin`.
void writeEvidence(TextWriter& text, const std::vector<Evidence>& evidence, std::size_t margin);

}  // namespace Report

#pragma once

#include "Package.hpp"
#include "TextWriter.hpp"

namespace Report {

/// What is known of a package as a whole: board, time, kind, file, and the run that made it.
void writeFacts(TextWriter& text, const Package& package);

/// What korvel printed on standard error while it made the package, up to `most` lines.
void writeComplaints(TextWriter& text, const Package& package, std::size_t most);

}  // namespace Report

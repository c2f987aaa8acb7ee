#pragma once

#include "LogEntry.hpp"
#include "TextWriter.hpp"

namespace Report {

/// Writes a log entry as columns: time in UTC, level, writer and text. Further lines of the entry begin at
/// the column of the writer. Each line begins with `indent` blanks.
void writeEntry(TextWriter& text, const LogEntry& entry, std::size_t indent = 0);

}  // namespace Report

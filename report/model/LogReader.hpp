#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "LineReader.hpp"
#include "LogForms.hpp"
#include "Memory.hpp"
#include "Package.hpp"

namespace Report {

/// Reads the lines of a log while they stream by: finds where entries were overwritten, and counts lines
/// before the first entry. The entries around an overlap are raw until the loader parses them, with all of
/// their lines as text: only the whole package tells the year and zone of syslog's times.
class LogReader : public LineReader {
public:
    /// Fills `part`. An entry with more than `longest` bytes in all of its lines is too long.
    /// `otherForms` are further forms of lines, or null; they must outlive this object.
    LogReader(Part& partOfLog, bool withOverlaps, std::size_t longest, Memory& memoryOfPackage,
              const LogForms* otherForms = nullptr);

    bool line(std::string_view line) override;
    bool finish(std::string_view rest, End end) override;
    void discard() override;

    bool hasLongEntry() const { return longEntry; }

private:
    /// What is known of the entry after the last overlap.
    enum class After : std::uint8_t { complete, awaited, begun };

    void beginEntry(std::string_view line);
    void extendEntry(std::string_view line);
    bool addOverlap();
    bool endEntryAfterOverlap();
    bool keep(std::size_t bytes);

    Part& part;
    bool findsOverlaps;
    std::size_t maxEntry;
    Memory& memory;
    const LogForms* forms;

    std::string entry;  // the beginning of the current one
    std::size_t entrySize = 0;
    bool longEntry = false;
    bool anyTime = false;
    After after = After::complete;
    std::size_t keptBytes = 0;
};

}  // namespace Report

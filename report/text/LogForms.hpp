#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "LogEntry.hpp"
#include "TextPattern.hpp"

namespace Report {

/// The pieces of a line of a log. They point into the line.
struct LogPieces {
    std::string_view time;
    std::optional<Level> level;
    std::string_view tag;
    std::string_view text;
};

/// Forms of log lines that rules describe, beside those that EntryParser knows.
class LogForms {
public:
    using Levels = std::map<std::string, Level, std::less<>>;

    /// A form is a pattern for whole lines with the named groups `time` and `text`, and also `level` and
    /// `tag` if lines have them. `levels` has the words for levels, in lower case. Throws PatternError.
    void add(const std::string& pattern, const Levels& levels);

    /// Splits a line that has one of the forms, the first one that fits.
    std::optional<LogPieces> find(std::string_view line) const;

private:
    struct Form {
        TextPattern pattern;
        std::size_t time = 0;  // indices of groups; 0: there is no such group
        std::size_t level = 0;
        std::size_t tag = 0;
        std::size_t text = 0;
        Levels levels;
    };

    std::vector<Form> forms;
};

}  // namespace Report

#pragma once

#include <cstdint>
#include <string_view>

namespace Report {

/// Reads the lines of a text, in their order and without their line feeds.
class LineReader {
public:
    LineReader() = default;
    LineReader(const LineReader&) = delete;
    LineReader& operator=(const LineReader&) = delete;
    LineReader(LineReader&&) = delete;
    LineReader& operator=(LineReader&&) = delete;
    virtual ~LineReader() = default;

    /// Returns false if there is no memory for what the line holds.
    [[nodiscard]] virtual bool line(std::string_view line) = 0;

    /// How a text ends.
    enum class End : std::uint8_t { complete, cut };

    /// Ends the text. `rest` is a last line without a line feed, or empty.
    [[nodiscard]] virtual bool finish(std::string_view rest, End end) = 0;

    /// Removes again what was read, and gives back its memory.
    virtual void discard() = 0;
};

}  // namespace Report

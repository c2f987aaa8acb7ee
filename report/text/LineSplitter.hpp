#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Report {

/// Splits a text that arrives in pieces into lines. Copies only lines that span pieces.
class LineSplitter {
public:
    /// Lines that are longer than `longest` bytes are cut to it.
    explicit LineSplitter(std::size_t longest) : maxLine(longest) {}

    /// Calls `visit` with each line that ends in `bytes`, without its line feed.
    template <typename Visit>
    void add(std::string_view bytes, Visit visit) {
        for (;;) {
            const std::size_t end = bytes.find('\n');
            if (end == std::string_view::npos) {
                break;
            }
            const std::string_view line = bytes.substr(0, end);
            if (start.empty()) {
                visit(shorten(line));
            } else {
                extend(line);
                visit(std::string_view(start));
                start.clear();
            }
            bytes.remove_prefix(end + 1);
        }
        extend(bytes);
    }

    /// The line that has begun and has no line feed yet; empty if there is none.
    std::string_view rest() const { return start; }

    /// Whether a line was cut.
    bool cutLine() const { return cut; }

private:
    std::string_view shorten(std::string_view line) {
        cut = cut || line.size() > maxLine;
        return line.substr(0, maxLine);
    }
    void extend(std::string_view bytes) {
        const std::size_t room = maxLine - start.size();
        cut = cut || bytes.size() > room;
        start += bytes.substr(0, room);
    }

    std::size_t maxLine;
    std::string start;  // of a line that continues in the next piece
    bool cut = false;
};

}  // namespace Report

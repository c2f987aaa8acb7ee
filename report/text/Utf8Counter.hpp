#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace Report {

/// Counts the bytes of a text that are not UTF-8. The text arrives in pieces of any size.
class Utf8Counter {
public:
    void add(std::string_view bytes);

    /// Ends the text: a character that is incomplete is not UTF-8.
    void finish();

    std::uint64_t invalid() const { return invalidBytes; }

private:
    std::size_t scan(std::string_view bytes);

    std::uint64_t invalidBytes = 0;
    std::string open;  // up to three bytes at the end, which may be the beginning of a character
};

}  // namespace Report

#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Report {

/// A line of CSV (RFC 4180). A program that reads a number gets the same number. An unknown value is an empty
/// field, and an empty text is "".
class CsvLine {
public:
    void add(std::string_view text);
    void add(std::int64_t number);
    /// Has a decimal point or an exponent, so that it remains a decimal number.
    void add(double number);
    void addUnknown();

    /// The line with CR LF, until the next call of add(), which begins a new line.
    std::string_view end();

private:
    void beginField();
    void addQuoted(std::string_view text);

    std::string line;
    bool begun = false;  ///< has a field
};

}  // namespace Report

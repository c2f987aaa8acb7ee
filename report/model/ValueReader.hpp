#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "LineReader.hpp"
#include "Memory.hpp"
#include "Package.hpp"

namespace Report {

/// Reads the values of a part. A title is the last line before a value that is neither blank nor a value. The
/// first and last line of a dump, such as <netfp_proxy_dump>, are neither titles nor other lines.
class ValueReader : public LineReader {
public:
    /// Appends to `values`, and counts the other lines of `part`.
    ValueReader(Part& partOfValues, std::vector<Value>& allValues, Memory& memoryOfPackage);

    bool line(std::string_view line) override;
    bool finish(std::string_view rest, End end) override;
    void discard() override;

private:
    bool addValue(std::string_view name, std::string_view number);
    bool nameLoneNumber();
    void replaceTitle(std::string_view line);

    Part& part;
    std::vector<Value>& values;
    Memory& memory;
    std::size_t firstValue;
    std::size_t keptBytes = 0;

    std::string title;
    bool titleUsed = true;  // a value is under it, or there is none
    bool insideDump = false;
    std::size_t filledLines = 0;
    std::map<std::string, std::size_t> occurrences;  // by title and name
};

}  // namespace Report

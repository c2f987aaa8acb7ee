#include "CsvLine.hpp"

#include <array>
#include <charconv>
#include <cstddef>

namespace Report {

namespace {

/// The shortest text that is read back as the same number.
template <typename Number>
std::string_view shortestText(Number number, std::array<char, 32>& buffer) {
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
    return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

}  // namespace

void CsvLine::add(std::string_view text) {
    beginField();
    if (text.empty() || text.find_first_of(",\"\r\n") != std::string_view::npos) {
        addQuoted(text);
    } else {
        line += text;
    }
}

void CsvLine::add(std::int64_t number) {
    std::array<char, 32> buffer{};
    beginField();
    line += shortestText(number, buffer);
}

void CsvLine::add(double number) {
    std::array<char, 32> buffer{};
    const std::string_view text = shortestText(number, buffer);
    beginField();
    line += text;
    line += text.find_first_not_of("-0123456789") == std::string_view::npos ? ".0" : "";
}

void CsvLine::addUnknown() {
    beginField();
}

std::string_view CsvLine::end() {
    line += "\r\n";
    begun = false;
    return line;
}

void CsvLine::beginField() {
    if (begun) {
        line += ',';
    } else {
        line.clear();
    }
    begun = true;
}

void CsvLine::addQuoted(std::string_view text) {
    line += '"';
    for (const char byte : text) {
        line.append(byte == '"' ? 2 : 1, byte);
    }
    line += '"';
}

}  // namespace Report

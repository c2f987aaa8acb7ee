#include "ValueReader.hpp"

#include <algorithm>
#include <utility>

#include "MemberName.hpp"
#include "ValueLine.hpp"

namespace Report {
namespace {

// A real part has less than 100. A reply that does not end repeats its values a hundred thousand times.
constexpr std::size_t mostValues = 10'000;

bool isNameByte(char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           byte == '_';
}

/// Whether a line is <NAME_dump> or </NAME_dump>.
bool isDumpMark(std::string_view line) {
    if (!line.starts_with('<') || !line.ends_with("_dump>")) {
        return false;
    }
    line.remove_prefix(line.starts_with("</") ? 2 : 1);
    line.remove_suffix(1);
    return std::ranges::all_of(line, isNameByte);
}

std::size_t memoryOf(const Value& value) {
    // The vector and the table of occurrences need memory while they grow.
    return 2 * sizeof value + value.part.size() + 2 * value.title.size() + 2 * value.name.size() +
           value.text.size();
}

}  // namespace

ValueReader::ValueReader(Part& partOfValues, std::vector<Value>& allValues, Memory& memoryOfPackage)
    : part(partOfValues), values(allValues), memory(memoryOfPackage), firstValue(allValues.size()) {
}

bool ValueReader::line(std::string_view line) {
    line = trimLine(line);
    if (line.empty()) {
        return true;
    }
    ++filledLines;
    if (const auto value = parseValueLine(line)) {
        titleUsed = true;
        return addValue(value->name, value->number);
    }
    if (isDumpMark(line)) {
        insideDump = !line.starts_with("</");
        replaceTitle({});
        titleUsed = true;
        return true;
    }
    replaceTitle(line);
    return true;
}

bool ValueReader::finish(std::string_view rest, End end) {
    // A number at the end of a text that was cut may lack digits.
    if (end == End::cut || insideDump) {
        if (const std::string_view last = trimLine(rest); !last.empty()) {
            replaceTitle(last);
        }
    } else if (!line(rest) || !nameLoneNumber()) {
        return false;
    }
    replaceTitle({});
    return true;
}

/// A text that is one number is a value with the name of its part.
bool ValueReader::nameLoneNumber() {
    if (filledLines != 1 || titleUsed || !isNumber(title)) {
        return true;
    }
    titleUsed = true;
    const std::string number = std::exchange(title, {});
    return addValue(baseName(part.name), number);
}

bool ValueReader::addValue(std::string_view name, std::string_view number) {
    if (values.size() - firstValue >= mostValues) {
        ++part.moreValues;
        return true;
    }
    Value value{part.name, title, std::string(name), 1, numberOf(number), std::string(number)};
    const std::size_t bytes = memoryOf(value);
    if (!memory.keepContent(bytes)) {
        return false;
    }
    keptBytes += bytes;
    value.occurrence = ++occurrences[title + '\0' + value.name];
    values.push_back(std::move(value));
    return true;
}

void ValueReader::replaceTitle(std::string_view line) {
    part.otherLines += titleUsed ? 0 : 1;
    title = line;
    titleUsed = false;
}

void ValueReader::discard() {
    part.otherLines = 0;
    part.moreValues = 0;
    values.erase(values.begin() + static_cast<std::ptrdiff_t>(firstValue), values.end());
    memory.releaseContent(std::exchange(keptBytes, 0));
}

}  // namespace Report

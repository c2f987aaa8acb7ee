#include "TextChange.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>

#include "TextCounts.hpp"
#include "TextHash.hpp"
#include "ValueLine.hpp"

namespace Report {
namespace {

constexpr std::size_t mostShown = 3;  // lines

using Visit = std::function<void(std::string_view line, std::uint64_t hash)>;

/// Whether this is the line of the value. The only line of a part that is one number has no name.
bool holds(std::string_view line, const Value& value) {
    const std::optional<ValueLine> parsed = parseValueLine(line);
    return parsed ? parsed->name == value.name && parsed->number == value.text : line == value.text;
}

/// Calls `visit` with each line that is neither blank nor a value, without blanks at its ends.
void forEachOtherLine(const PartText& text, std::size_t maxLine, const Visit& visit) {
    auto next = text.values.begin();
    for (const Part* member : text.members) {
        member->text.forEachLine(maxLine, [&](std::string_view bytes) {
            const std::string_view line = trimLine(bytes);
            if (next != text.values.end() && holds(line, **next)) {
                ++next;
            } else if (!line.empty()) {
                visit(line, std::hash<std::string_view>{}(line));
            }
            return true;
        });
    }
}

/// Counts the lines of `text` that `other` does not have, and keeps the first of them.
std::size_t linesOnlyIn(const PartText& text, const PartText& other, std::size_t maxLine,
                        std::vector<std::string>& first) {
    std::vector<std::uint64_t> hashes;
    forEachOtherLine(other, maxLine, [&](std::string_view, std::uint64_t hash) { hashes.push_back(hash); });
    TextCounts known(std::move(hashes));
    std::size_t count = 0;
    forEachOtherLine(text, maxLine, [&](std::string_view line, std::uint64_t hash) {
        if (!known.take(hash) && count++ < mostShown) {
            first.emplace_back(line);
        }
    });
    return count;
}

std::uint64_t hashOf(const PartText& text) {
    TextHash hash;
    for (const Part* member : text.members) {
        hash.addNumber(member->textSize);
        member->text.read([&](std::string_view piece) {
            hash.addText(piece);
            return true;
        });
    }
    return hash.value();
}

}  // namespace

TextChange compareTexts(const PartText& before, const PartText& after, std::size_t maxLine) {
    TextChange change;
    change.added = linesOnlyIn(after, before, maxLine, change.firstAdded);
    change.removed = linesOnlyIn(before, after, maxLine, change.firstRemoved);
    return change;
}

bool isSameText(const PartText& before, const PartText& after) {
    return hashOf(before) == hashOf(after);
}

}  // namespace Report

#include "TextWriter.hpp"

#include <algorithm>
#include <array>
#include <ostream>

namespace Report {
namespace {

constexpr std::string_view endOfColour = "\x1b[0m";
constexpr std::string_view ellipsis = "...";
constexpr std::size_t narrowest = 20;  // columns of a broken text, even on a narrow terminal

// In the order of the enumeration.
constexpr std::array<std::string_view, 6> colours{"",           "\x1b[1m",    "\x1b[2m",
                                                  "\x1b[1;32m", "\x1b[1;33m", "\x1b[1;31m"};

bool beginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

/// The bytes of the first `columns` characters.
std::size_t bytesOf(std::size_t columns, std::string_view text) {
    std::size_t seen = 0;
    const auto* const end = std::find_if(
        text.begin(), text.end(), [&](char byte) { return beginsCharacter(byte) && seen++ == columns; });
    return static_cast<std::size_t>(end - text.begin());
}

/// Takes the beginning of a text that fits into a line, and drops the blanks after it.
std::string_view takeLine(std::string_view& text, std::size_t columns) {
    std::size_t length = bytesOf(columns, text);
    if (length < text.size()) {
        const std::size_t blank = text.rfind(' ', length);
        length = blank == std::string_view::npos || blank == 0 ? length : blank;
    }
    const std::string_view line = text.substr(0, length);
    text.remove_prefix(std::min(text.size(), text.find_first_not_of(' ', length)));
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

}  // namespace

std::size_t columnsOf(std::string_view safe) {
    return static_cast<std::size_t>(std::count_if(safe.begin(), safe.end(), beginsCharacter));
}

std::string padding(std::size_t columns, std::string_view safe) {
    std::string blanks;
    blanks.resize(columns - std::min(columns, columnsOf(safe)), ' ');
    return blanks;
}

std::string cutTo(std::size_t columns, std::string_view safe) {
    if (columnsOf(safe) <= columns) {
        return std::string(safe);
    }
    const std::size_t kept = columns - std::min(columns, ellipsis.size());
    return std::string(safe.substr(0, bytesOf(kept, safe))).append(ellipsis);
}

std::string TextWriter::inked(Ink ink, std::string_view safe) const {
    if (!style.colour || ink == Ink::plain) {
        return std::string(safe);
    }
    return std::string(colours.at(static_cast<std::size_t>(ink))).append(safe).append(endOfColour);
}

void TextWriter::heading(std::string_view safe) {
    out << '\n' << inked(Ink::bold, safe) << '\n';
}

void TextWriter::line(std::string_view safe) {
    out << safe << '\n';
}

std::string TextWriter::broken(std::string_view safe, std::size_t margin) const {
    const std::size_t columns = std::max(narrowest, style.width - std::min(style.width, margin));
    std::string text(takeLine(safe, columns));
    while (!safe.empty()) {
        text.append("\n").append(margin, ' ').append(takeLine(safe, columns));
    }
    return text;
}

void TextWriter::paragraph(std::string_view safe, std::size_t margin) {
    out << std::string(margin, ' ') << broken(safe, margin) << '\n';
}

void TextWriter::labelled(std::string_view label, std::string_view safe, std::size_t labelWidth,
                          std::size_t margin, Ink ink) {
    const std::size_t used = columnsOf(label);
    out << std::string(margin, ' ') << inked(ink, label);
    if (used < labelWidth) {
        out << std::string(labelWidth - used, ' ');
    } else {
        out << '\n' << std::string(margin + labelWidth, ' ');
    }
    out << broken(safe, margin + labelWidth) << '\n';
}

}  // namespace Report

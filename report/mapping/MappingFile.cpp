#include "MappingFile.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <stdexcept>
#include <vector>

#include "AddressSyntax.hpp"
#include "ByteClass.hpp"
#include "Letters.hpp"

namespace Report {

namespace {

constexpr std::string_view header = "korvel-report map ";
constexpr std::string_view version = "1";
constexpr std::array<std::string_view, 4> kinds{"ip4", "ip6", "mac",
                                                "eui64"};  ///< in the order of AddressKind
constexpr std::string_view nameKind = "name";

std::string escaped(std::string_view name) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const char byte : name) {
        if (isOf(byte, alnumByte | joinerByte)) {
            text += byte;
        } else {
            const auto value = static_cast<unsigned char>(byte);
            text += {'%', digits[value / 16], digits[value % 16]};
        }
    }
    return text;
}

/// The name, or an empty text if it is not escaped as writeMapping() does, or no folded word.
std::string unescaped(std::string_view text) {
    std::string name;
    for (std::size_t place = 0; place < text.size(); ++place) {
        if (text[place] != '%') {
            name += text[place];
            continue;
        }
        if (text.size() - place < 3 || !isHex(text, {place + 1, place + 3})) {
            return {};
        }
        name += static_cast<char>(hexValue(text[place + 1]) * 16 + hexValue(text[place + 2]));
        place += 2;
    }
    return isWord(name) && folded(name) == name ? name : std::string();
}

std::optional<Address> parseAddress(AddressKind kind, std::string_view text) {
    constexpr std::size_t longestText = 40;
    std::optional<FoundAddress> found;
    if (text.empty() || text.size() > longestText) {
        return std::nullopt;
    }
    if (kind == AddressKind::ip4) {
        found = ip4At(text, 0);
    } else if (kind == AddressKind::ip6) {
        found = ip6At(text, 0);
    } else {
        found = hardwareAddressAt(text, runAt(text, 0, longestText));
    }
    const bool complete = found && found->end == text.size() && found->address.kind == kind;
    return complete && !describesNobody(found->address) ? std::optional(found->address) : std::nullopt;
}

/// The three words of a line; empty if it has more or fewer.
std::array<std::string_view, 3> wordsOf(std::string_view line) {
    std::array<std::string_view, 3> words;
    for (std::string_view& word : words) {
        const std::size_t end = std::min(line.find(' '), line.size());
        word = line.substr(0, end);
        line.remove_prefix(std::min(end + 1, line.size()));
    }
    return line.empty() ? words : std::array<std::string_view, 3>();
}

/// Adds the line to the mapping. Returns the reason if it cannot; empty otherwise.
std::string_view addLine(std::string_view line, Mapping& mapping) {
    constexpr std::string_view malformed = "not a kind, an original and its replacement";
    constexpr std::string_view contradiction = "contradicts an earlier line";
    const auto [kind, original, replacement] = wordsOf(line);
    if (kind == nameKind) {
        const std::string from = unescaped(original);
        const std::string to = unescaped(replacement);
        if (from.empty() || from == to || !sameCharacterLengths(from, to)) {
            return malformed;
        }
        return mapping.add(from, to) ? "" : contradiction;
    }
    const auto* const row = std::ranges::find(kinds, kind);
    if (row == kinds.end()) {
        return malformed;
    }
    const auto addressKind = static_cast<AddressKind>(row - kinds.begin());
    const std::optional<Address> from = parseAddress(addressKind, original);
    const std::optional<Address> to = parseAddress(addressKind, replacement);
    if (!from || !to || from == to) {
        return malformed;
    }
    return mapping.add(*from, *to) ? "" : contradiction;
}

void checkHeader(std::string_view line) {
    if (!line.starts_with(header)) {
        throw std::invalid_argument("line 1: not a map of korvel-report");
    }
    if (line.substr(header.size()) != version) {
        throw std::invalid_argument("line 1: a map of another version: " + std::string(line));
    }
}

}  // namespace

std::string writeMapping(const Mapping& mapping) {
    std::vector<std::pair<Address, Address>> addresses(mapping.replacements().addresses.begin(),
                                                       mapping.replacements().addresses.end());
    std::vector<std::pair<std::string, std::string>> names(mapping.replacements().names.begin(),
                                                           mapping.replacements().names.end());
    std::ranges::sort(addresses);
    std::ranges::sort(names);
    std::string text =
        std::string(header) + std::string(version) +
        "\n# Originals and their replacements. Keep this file: korvel-report restore needs it.\n"
        "# It is as secret as the original package.\n";
    const auto addLine = [&text](std::string_view kind, const std::string& from, const std::string& to) {
        text.append(kind).append(" ").append(from).append(" ").append(to).append("\n");
    };
    for (const auto& [original, replacement] : addresses) {
        addLine(kinds[static_cast<std::size_t>(original.kind)], textOf(original), textOf(replacement));
    }
    for (const auto& [original, replacement] : names) {
        addLine(nameKind, escaped(original), escaped(replacement));
    }
    return text;
}

Mapping parseMapping(std::string_view text) {
    Mapping mapping;
    for (std::size_t number = 1; number == 1 || !text.empty(); ++number) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (number == 1) {
            checkHeader(line);
        } else if (!line.empty() && line.front() != '#') {
            const std::string_view reason = addLine(line, mapping);
            if (!reason.empty()) {
                throw std::invalid_argument("line " + std::to_string(number) + ": " + std::string(reason));
            }
        }
    }
    return mapping;
}

}  // namespace Report

#include "Sidecar.hpp"

#include <algorithm>
#include <cstddef>

#include "Timestamp.hpp"

namespace Report {
namespace {

constexpr std::string_view knownFormat = "1";

bool isKey(std::string_view key) {
    return !key.empty() && std::ranges::all_of(key, [](char byte) {
        return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') || byte == '-' || byte == '_';
    });
}

/// Takes the first line of `text`. Returns no value if it has no line feed.
std::optional<std::string_view> takeLine(std::string_view& text) {
    const std::size_t end = text.find('\n');
    if (end == std::string_view::npos) {
        return std::nullopt;
    }
    std::string_view line = text.substr(0, end);
    line.remove_suffix(line.ends_with('\r') ? 1 : 0);
    text.remove_prefix(end + 1);
    return line;
}

/// Splits "a: b". Without a colon, all is in front.
std::pair<std::string, std::string> splitAtColon(std::string_view text) {
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        return {std::string(text), {}};
    }
    const std::size_t value = std::min(text.find_first_not_of(' ', colon + 1), text.size());
    return {std::string(text.substr(0, colon)), std::string(text.substr(value))};
}

/// Adds a line `key: value`. Returns what is wrong with it; empty if nothing is.
std::string addLine(Sidecar& sidecar, std::string_view line) {
    auto [key, value] = splitAtColon(line);
    if (line.find(':') == std::string_view::npos || !isKey(key)) {
        return "a line that is not `key: value`";
    }
    if (key == "probe") {
        sidecar.probes.push_back(splitAtColon(value));
        return {};
    }
    const auto [place, added] = sidecar.keys.emplace(std::move(key), std::move(value));
    return added ? std::string() : "the key `" + place->first + "` twice";
}

std::optional<Time> timeOf(const std::string* text) {
    return text == nullptr ? std::nullopt : parseRfc3339(*text);
}

}  // namespace

const std::string* Sidecar::find(std::string_view key) const {
    const auto found = keys.find(key);
    return found == keys.end() ? nullptr : &found->second;
}

std::optional<Time> Sidecar::began() const {
    return timeOf(find("began"));
}

std::optional<Time> Sidecar::ended() const {
    return timeOf(find("ended"));
}

std::optional<Sidecar> parseSidecar(std::string_view text, std::string& error) {
    Sidecar sidecar;
    for (;;) {
        const std::optional<std::string_view> line = takeLine(text);
        if (!line) {
            error = "no empty line after the keys";
            return std::nullopt;
        }
        if (line->empty()) {
            break;
        }
        error = addLine(sidecar, *line);
        if (!error.empty()) {
            return std::nullopt;
        }
    }
    const std::string* const format = sidecar.find("format");
    if (format == nullptr || *format != knownFormat) {
        error = format == nullptr ? "no key `format`" : "unknown format `" + *format + "`";
        return std::nullopt;
    }
    sidecar.standardError = text;
    return sidecar;
}

}  // namespace Report

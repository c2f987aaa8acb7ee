#include "SidecarText.hpp"

#include <algorithm>
#include <array>
#include <span>
#include <utility>

#include "Letters.hpp"
#include "SmallFile.hpp"

namespace Report {

namespace {

using namespace std::string_view_literals;

/// Keys whose values name nobody, and that readers need unchanged.
constexpr std::array fixedKeys{"format"sv, "status"sv, "began"sv, "ended"sv, "sha256"sv};

/// Calls `visit` with the key of each line and the beginning and end of its value, until the empty line.
/// Returns the place of what is behind that line.
template <typename Visit>
std::size_t forEachValue(std::string_view text, Visit visit) {
    std::size_t begin = 0;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        const std::string_view line = text.substr(begin, end - begin);
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos) {
            return end;
        }
        visit(line.substr(0, colon), begin + colon + 1, end);
        begin = std::min(end + 1, text.size());
    }
    return begin;
}

}  // namespace

std::optional<UsedSidecar> readUsedSidecar(const std::string& path, std::string_view sha256,
                                           std::vector<std::string>& notes) {
    constexpr std::size_t largest = std::size_t{1} << 20;
    const std::string text = readSmallFile(path, largest);
    std::string error;
    std::optional<Sidecar> sidecar = parseSidecar(text, error);
    if (sidecar) {
        error = whyForeign(*sidecar, sha256);
    }
    if (error.empty()) {
        return UsedSidecar{text, std::move(*sidecar)};
    }
    notes.push_back(path + ": left out: " + error);
    return std::nullopt;
}

std::string handleSidecar(std::string text, TokenHandler& handler) {
    const std::string keys = text;
    const auto handle = [&](std::size_t begin, std::size_t end) {
        TokenScanner(handler).scan(std::span(text).subspan(begin, end - begin), 0, true);
    };
    const std::size_t standardError = forEachValue(keys, [&](auto key, std::size_t begin, std::size_t end) {
        if (std::ranges::find(fixedKeys, key) == fixedKeys.end()) {
            handle(begin, end);
        }
    });
    handle(standardError, text.size());
    return text;
}

std::string withChecksum(std::string text, std::string_view sha256) {
    const std::string keys = text;
    forEachValue(keys, [&](auto key, std::size_t begin, std::size_t end) {
        if (key == "sha256") {
            text.replace(begin, end - begin, " " + std::string(sha256));
        }
    });
    return text;
}

}  // namespace Report

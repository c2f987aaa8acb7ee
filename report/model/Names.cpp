#include "Names.hpp"

#include <algorithm>
#include <array>
#include <cstddef>

namespace Report {
namespace {

// Each table is in the order of its enumeration.
constexpr std::array<std::string_view, 7> states{"present", "empty",      "missing", "cut",
                                                 "stale",   "unreadable", "not read"};
constexpr std::array<std::string_view, 3> certainties{"certain", "likely", "unknown"};
constexpr std::array<std::string_view, 3> severities{"error", "warning", "note"};
constexpr std::array<std::string_view, 6> verdicts{"whole", "incomplete", "not fully read",
                                                   "cut",   "altered",    "unreadable"};
constexpr std::array<std::string_view, 4> levels{"error", "warning", "information", "debug"};
constexpr std::array<std::string_view, 6> kinds{"", "pkg", "pkg-trs", "pkg-sup", "pkg-pm", "pkg-sdown"};

static_assert(states.size() == static_cast<std::size_t>(State::notRead) + 1);
static_assert(certainties.size() == static_cast<std::size_t>(Certainty::unknown) + 1);
static_assert(severities.size() == static_cast<std::size_t>(Severity::note) + 1);
static_assert(verdicts.size() == static_cast<std::size_t>(Verdict::unreadable) + 1);
static_assert(levels.size() == static_cast<std::size_t>(Level::debug) + 1);
static_assert(kinds.size() == static_cast<std::size_t>(Kind::shutdown) + 1);

template <typename Names, typename Enumerator>
std::string_view find(const Names& names, Enumerator enumerator) {
    return names.at(static_cast<std::size_t>(enumerator));
}

}  // namespace

std::string_view nameOf(State state) {
    return find(states, state);
}

std::string_view nameOf(Certainty certainty) {
    return find(certainties, certainty);
}

std::string_view nameOf(Severity severity) {
    return find(severities, severity);
}

std::string_view nameOf(Verdict verdict) {
    return find(verdicts, verdict);
}

std::string_view nameOf(Level level) {
    return find(levels, level);
}

std::string_view keywordOf(Kind kind) {
    return find(kinds, kind);
}

std::optional<Kind> kindOfKeyword(std::string_view keyword) {
    const auto* const found = std::find(kinds.begin() + 1, kinds.end(), keyword);
    if (found == kinds.end()) {
        return std::nullopt;
    }
    return static_cast<Kind>(found - kinds.begin());
}

}  // namespace Report

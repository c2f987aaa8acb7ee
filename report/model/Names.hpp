#pragma once

#include <optional>
#include <string_view>

#include "Package.hpp"

namespace Report {

/// The words for the enumerations of a package. People and programs read the same words.
std::string_view nameOf(State state);          ///< such as "missing", "not read"
std::string_view nameOf(Certainty certainty);  ///< such as "likely"
std::string_view nameOf(Severity severity);    ///< such as "warning"
std::string_view nameOf(Verdict verdict);      ///< such as "incomplete", "not fully read"
std::string_view nameOf(Level level);          ///< such as "information"

/// The keyword of korvel that makes packages of this kind, such as "pkg-trs". Empty for Kind::unknown.
std::string_view keywordOf(Kind kind);

/// The kind of package that a keyword of korvel makes. No value for another word.
std::optional<Kind> kindOfKeyword(std::string_view keyword);

}  // namespace Report

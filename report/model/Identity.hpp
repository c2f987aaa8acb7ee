#pragma once

#include "EntryParser.hpp"
#include "LoadOptions.hpp"
#include "Package.hpp"

namespace Report {

/// Completes a package whose members and sidecar were read: board, kind, time and zone, and the entries
/// beside overlaps, whose times depend on them. Nested packages have the board and the zone of the outer one.
void identify(Package& package, const LoadOptions& options);

/// The parser for entries of a package whose time and zone are known.
EntryParser parserFor(const Package& package);

}  // namespace Report

#pragma once

#include <cstddef>
#include <functional>

#include "LoadOptions.hpp"
#include "Package.hpp"
#include "PackageSource.hpp"

namespace Report {

/// Reads a package into plain data: parts, values, times, identity, nested packages, sidecar. Judges nothing:
/// each part that is in the package has the state present, cut, unreadable or notRead, `expected` is false,
/// and `verdict` is not set. Throws std::system_error if the package cannot be opened or read. A sidecar that
/// cannot be read is no error.
Package loadPackage(const PackageSource& source, const LoadOptions& options);

/// Calls `visit` with each entry of a part that is a log, oldest first as in the file, until it returns
/// false. Needs a package that was loaded with Keep::all. `zone` and the year of syslog entries come from
/// `package`.
void forEachEntry(const Package& package, const Part& part, std::size_t maxLine,
                  const std::function<bool(const LogEntry&)>& visit);

}  // namespace Report

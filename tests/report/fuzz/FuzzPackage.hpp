#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "PackageLoader.hpp"
#include "UniqueFd.hpp"

namespace ReportFuzz {

/// A package and its sidecar that a text describes, in files in memory. A line `== NAME` begins a member,
/// whose contents are the lines up to the next one. `== NAME TIME` also sets the time of this member and the
/// next ones.
///
///     == ./mmi/sfn/HeapStats.log 1795336233
///     heap
///       in use   17
///     == run
///     format: 1
///
/// A name that ends in `.gz` stands for a compressed member, `.tgz` for a nested package with the members up
/// to
/// `== end`, and `run` for the sidecar, in which `@` is replaced by the package's checksum.
class FuzzPackage {
public:
    explicit FuzzPackage(std::string_view description);

    Report::Package load(Report::Keep keep) const;

private:
    Base::UniqueFd package;
    std::optional<Base::UniqueFd> run;
};

}  // namespace ReportFuzz

#pragma once

#include <vector>

#include "Package.hpp"
#include "PartTable.hpp"

namespace Report {

/// The signs that a full /tmp leaves in a package without a sidecar. korvel writes its files in a fixed
/// order. If the file system fills up, all files after that moment are empty or cut at a page. An empty file
/// is a sign only where korvel and the kernel never write one.
class DiskSigns {
public:
    /// Needs the states of the parts.
    explicit DiskSigns(const Package& package);

    /// Whether the file system was full when this part was written.
    bool explains(const Part& part, const PartPlace& place) const;

    /// Whether it may have been: some replies and all that korvel writes after them are empty, but none of
    /// these files is a sign.
    bool mayExplain(const Part& part, const PartPlace& place) const;

    const std::vector<Evidence>& evidence() const { return signs; }

private:
    int fullFrom;  // position in the order of writing from which on nothing more fitted
    bool syslibEmpty = false;
    std::vector<Evidence> signs;
};

}  // namespace Report

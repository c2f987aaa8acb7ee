#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Expectation.hpp"
#include "Package.hpp"
#include "PartTable.hpp"

namespace Report {

struct ExpectedPart {
    std::string name;
    bool assumed = false;  ///< nobody knows whether the board has this dispatcher
};

/// Whether the package has this folder, or a member in it.
bool hasFolder(const Package& package, std::string_view folder);

/// The parts that a package should have, in the order in which korvel collects them. A package needs the part
/// "linux" if its kind has Linux logs and it has no folder that can hold them.
std::vector<ExpectedPart> expectedParts(const Package& package, const Expectation& expectation);

/// Whether a part that is in the package counts, although it need not be there: the Linux logs, the
/// post-mortem copy and the files of the archive. The platform decides which Linux logs there are.
bool countsIfThere(const Part& part, const PartPlace& place);

}  // namespace Report

#pragma once

#include <string>
#include <vector>

#include "CauseTexts.hpp"
#include "Package.hpp"
#include "PartTable.hpp"

namespace Report {

/// Why a part is in its state.
struct Diagnosis {
    Cause cause;
    Certainty certainty = Certainty::likely;  ///< certain only if the evidence leaves no other cause
    std::string detail = {};                  ///< for the text of the cause
    std::vector<Evidence> evidence = {};
};

/// A part whose state is to be explained, and its place.
struct Subject {
    const Part& part;
    PartPlace place;
};

}  // namespace Report

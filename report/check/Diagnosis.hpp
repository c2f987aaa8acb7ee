#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "CauseTexts.hpp"
#include "Clues.hpp"
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

/// The cause of a state other than present.
Diagnosis diagnose(const Clues& clues, const Subject& subject);

/// The cause of an archive that is cut or altered.
Diagnosis diagnosePackage(const Clues& clues);

}  // namespace Report

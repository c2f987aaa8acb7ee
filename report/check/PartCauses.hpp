#pragma once

#include "Clues.hpp"
#include "Diagnosis.hpp"

namespace Report {

/// The cause of a state other than present.
Diagnosis diagnose(const Clues& clues, const Subject& subject);

/// The cause of an archive that is cut or altered.
Diagnosis diagnosePackage(const Clues& clues);

}  // namespace Report

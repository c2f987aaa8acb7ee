#pragma once

#include <optional>

#include "Clues.hpp"
#include "Diagnosis.hpp"

namespace Report {

/// The state that the sidecar shows for a part that looks present: for example left over from an earlier run,
/// because korvel wrote no new file. No value if it shows nothing.
std::optional<State> stateByRun(const Clues& clues, const Subject& subject);

/// The cause that the sidecar shows for a state. These causes are facts of the run. No value if it shows
/// none.
std::optional<Diagnosis> causeByRun(const Clues& clues, const Subject& subject);

}  // namespace Report

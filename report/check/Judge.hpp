#pragma once

#include "Expectation.hpp"
#include "Package.hpp"

namespace Report {

/// Decides which parts of a loaded package were expected, the state of each with its likely cause and
/// evidence, and the verdict. Adds the missing parts. Judges nested packages too, by their own contents; a
/// nested package that is cut or altered makes the outer one incomplete.
void judge(Package& package, const Expectation& expectation);

/// The exit status of check: 0 whole, 1 incomplete or not fully read, 2 cut or altered, 3 unreadable.
int exitStatusOf(Verdict verdict);

}  // namespace Report

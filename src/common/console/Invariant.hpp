#pragma once

namespace Korvel {

/// Ends the program by SIGABRT where what it relies on does not hold, in every kind of build; says what on
/// standard error first. `condition` is its text, `sourceFile` the name of the file that relies on it.
void requireInvariant(bool holds, const char* condition, const char* sourceFile);

}  // namespace Korvel

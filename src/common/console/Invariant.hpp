#pragma once

namespace Korvel {

/// If `holds` is false, reports the condition on standard error and terminates the program with SIGABRT, in
/// all build types. `condition` is the text of the condition; `sourceFile` is the name that the report gives.
void requireInvariant(bool holds, const char* condition, const char* sourceFile);

}  // namespace Korvel

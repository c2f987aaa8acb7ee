#pragma once

namespace Korvel {

/// Prints the help text, with the parts of all managers, on standard output. Prints nothing if `argc` is 0.
void printUsage(int argc, char** argv);

}  // namespace Korvel

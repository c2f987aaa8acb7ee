#pragma once

namespace Korvel {

/// Prints the help text, every manager's block included, on standard output. Nothing where `argc` is 0.
void printUsage(int argc, char** argv);

}  // namespace Korvel

#pragma once

namespace Korvel {

enum class OptionsResult { proceed, helpRequested };

/// Applies the common options from left to right, at any position, and removes them from the argument vector.
/// `argc` and `argv` keep the program name and all other arguments. Stops at "--help".
OptionsResult consumeCommonOptions(int& argc, char** argv);

}  // namespace Korvel

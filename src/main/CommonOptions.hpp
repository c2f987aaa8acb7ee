#pragma once

namespace Korvel {

enum class OptionsResult { goOn, helpWanted };

/// Applies the common options, strictly from left to right and wherever they stand, and takes them out of
/// the argument vector; `argc` and `argv` keep the program's name and everything that is no common option.
/// Stops at "--help".
OptionsResult consumeCommonOptions(int& argc, char** argv);

}  // namespace Korvel

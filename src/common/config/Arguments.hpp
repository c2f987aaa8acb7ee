#pragma once

namespace Korvel {

/// Removes entry `index` from an argument vector of `argc` entries. Later entries move down, and the last one
/// becomes a null pointer. The caller decrements its count.
void removeArgument(int index, int argc, char** argv);

}  // namespace Korvel

#pragma once

namespace Korvel {

/// Takes entry `index` out of an argument vector of `argc` entries in place: the later ones move down and
/// the place that becomes free holds a null pointer. The caller decrements its count.
void removeArgument(int index, int argc, char** argv);

}  // namespace Korvel

#pragma once

#include "Renderers.hpp"

namespace Report {

/// Whether a descriptor is a terminal.
bool isTerminal(int descriptor);

/// How text looks at the other end of a descriptor. On a terminal: its width, and colours unless the
/// environment forbids them (NO_COLOR, or TERM=dumb).
TextStyle styleFor(int descriptor);

}  // namespace Report

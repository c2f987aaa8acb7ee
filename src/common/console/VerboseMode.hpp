#pragma once

namespace Korvel {

/// The process-wide switch behind "-v"; off at start.
void setVerboseMode(bool enabled);
bool isVerboseMode();

}  // namespace Korvel

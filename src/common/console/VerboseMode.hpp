#pragma once

namespace Korvel {

/// The process-wide verbose mode of "-v"; initially off.
void setVerboseMode(bool enabled);
bool isVerboseMode();

}  // namespace Korvel

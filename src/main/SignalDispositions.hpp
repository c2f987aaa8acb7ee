#pragma once

namespace Korvel {

/// Makes the run independent of what its parent left the signals at, and of limits that would end it.
void setSignalDispositions();

}  // namespace Korvel

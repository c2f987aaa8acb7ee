#pragma once

namespace Korvel {

/// Makes the run independent of inherited signal dispositions, and of signals from file size limits and
/// closed pipes.
void setSignalDispositions();

}  // namespace Korvel

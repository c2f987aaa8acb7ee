#pragma once

namespace Korvel {

/// Returns true if the system log has room for a record, waiting at most one second. After a time-out, later
/// calls do not wait, until one finds room again. vsyslog() itself would block without limit on a log that
/// has stopped reading.
bool systemLogHasRoom();

}  // namespace Korvel

#pragma once

namespace Korvel {

/// Whether the system log has room for a record, or gets it within a second. vsyslog() itself would wait for
/// ever on a system log that has stopped reading.
bool systemLogHasRoom();

}  // namespace Korvel

#pragma once

namespace Korvel {

/// Whether the system log has room for a record, or gets it within a second; a log that did not is given no
/// more time until it has room again. vsyslog() itself would wait for ever on a log that has stopped reading.
bool systemLogHasRoom();

}  // namespace Korvel

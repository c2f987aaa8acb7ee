#pragma once

#include <cstdarg>

namespace Korvel {

/// Names for the levels, which are plain numbers wherever one is passed.
enum LogLvl : int { logError = 0, logWarning = 1, logInformation = 2, logDebug = 3 };

/// The system log's priority for a level (LOG_ERR, LOG_WARNING, LOG_INFO); LOG_DEBUG for any other value.
int logLvlToPriority(int level);

/// Sends one record to the system log. `format` and `arguments` are as for vprintf, without a line end. A
/// system log that has stopped reading loses the record.
void logToSystem(int level, const char* format, std::va_list arguments) __attribute__((format(printf, 2, 0)));

/// In verbose mode, sends one record to the system log and a bare line end to standard output; otherwise
/// does nothing. `format` and what follows are as for printf, without a line end.
void logf(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

}  // namespace Korvel

#pragma once

#include <cstdarg>

namespace Korvel {

/// Named values of log levels, which interfaces pass as int.
enum LogLvl : int { logError = 0, logWarning = 1, logInformation = 2, logDebug = 3 };

/// Returns the syslog priority of a level (LOG_ERR, LOG_WARNING, LOG_INFO), or LOG_DEBUG for any other value.
int logLvlToPriority(int level);

/// Sends one record to the system log. `format` and `arguments` are as for vprintf, without a line end. If
/// the system log has stopped reading, the record is lost.
void logToSystem(int level, const char* format, std::va_list arguments) __attribute__((format(printf, 2, 0)));

/// In verbose mode, sends one record to the system log and prints an empty line on standard output; otherwise
/// does nothing. `format` and its arguments are as for printf, without a line end.
void logf(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));

}  // namespace Korvel

#include "Log.hpp"

#include <syslog.h>

#include "Console.hpp"
#include "SystemLogRoom.hpp"

namespace Korvel {

int logLvlToPriority(LogLvl level) {
    switch (level) {
        case LogLvl::error:
            return LOG_ERR;
        case LogLvl::warning:
            return LOG_WARNING;
        case LogLvl::information:
            return LOG_INFO;
        default:
            return LOG_DEBUG;
    }
}

void logToSystem(LogLvl level, const char* format, std::va_list arguments) {
    if (systemLogHasRoom()) {
        vsyslog(logLvlToPriority(level), format, arguments);
    }
}

void logf(LogLvl level, const char* format, ...) {
    if (!isVerboseMode()) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    logToSystem(level, format, arguments);
    va_end(arguments);
    print('\n');
}

}  // namespace Korvel

#include "Log.hpp"

#include <syslog.h>

#include "Console.hpp"
#include "SystemLogRoom.hpp"

namespace Korvel {

int logLvlToPriority(int level) {
    switch (level) {
        case logError:
            return LOG_ERR;
        case logWarning:
            return LOG_WARNING;
        case logInformation:
            return LOG_INFO;
        default:
            return LOG_DEBUG;
    }
}

void logToSystem(int level, const char* format, std::va_list arguments) {
    if (systemLogHasRoom()) {
        vsyslog(logLvlToPriority(level), format, arguments);
    }
}

void logf(int level, const char* format, ...) {
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

#include "SmLogReader.hpp"

#include <cstring>

#include "SmLogs.hpp"

namespace Korvel {

std::string readSmLog(const char* logName, unsigned size, AppID app) {
    SmLog* const log = SmLog::getClientInstance(logName, smLogApplication);
    if (log == nullptr) {
        return {};
    }
    std::string text(size, '\0');
    log->read(text.data(), size, app, 0, smLogReadMode);
    text.resize(strnlen(text.data(), text.size()));
    return text;
}

}  // namespace Korvel

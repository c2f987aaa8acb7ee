#include "SmLogReader.hpp"

#include <cstring>

namespace Korvel {
namespace {

// Meaningful to the log library alone.
constexpr AppID client = 3;
constexpr unsigned readMode = 5;

}  // namespace

std::string readSmLog(const char* logName, unsigned size, AppID app) {
    SmLog* const log = SmLog::getClientInstance(logName, client);
    if (log == nullptr) {
        return {};
    }
    std::string text(size, '\0');
    log->read(text.data(), size, app, 0, readMode);
    text.resize(strnlen(text.data(), text.size()));
    return text;
}

}  // namespace Korvel

#include "GrowingLog.hpp"

#include <cstring>
#include <stdexcept>

#include "SmLog.hpp"

namespace {

constexpr unsigned capacity = 2U << 20U;
constexpr AppID application = 3;
constexpr unsigned readMode = 5;

}  // namespace

GrowingLog::GrowingLog(const char* logName) : name(logName), before(text()) {
}

std::string GrowingLog::text() const {
    SmLog* const log = SmLog::getClientInstance(name, application);
    if (log == nullptr) {
        throw std::runtime_error("no shared-memory log");
    }
    std::string buffer(capacity, '\0');
    log->read(buffer.data(), capacity, 0, 0, readMode);
    buffer.resize(::strnlen(buffer.data(), buffer.size()));
    return buffer;
}

std::string GrowingLog::versionIn(const std::string& output) const {
    std::string version = text();
    while (version.size() > before.size() && output.find(version) == std::string::npos) {
        version.pop_back();
        version.resize(version.rfind('\n') + 1);  // one entry less
    }
    return version;
}

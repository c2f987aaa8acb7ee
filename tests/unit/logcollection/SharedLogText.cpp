#include "SharedLogText.hpp"

#include <cstring>
#include <stdexcept>

#include "SmLog.hpp"

std::string writeSharedLog(const char* name, const std::vector<std::string>& entries) {
    constexpr AppID application = 3;
    constexpr unsigned readMode = 5;
    SmLog* const log = SmLog::getClientInstance(name, application);
    if (log == nullptr) {
        throw std::runtime_error(std::string("no shared-memory log ") + name);
    }
    for (const std::string& entry : entries) {
        log->write(0, "Test", "%s", entry.c_str());
    }
    std::string text(2U << 20, '\0');
    log->read(text.data(), static_cast<unsigned>(text.size()), 0, 0, readMode);
    text.resize(std::strlen(text.c_str()));
    return text;
}

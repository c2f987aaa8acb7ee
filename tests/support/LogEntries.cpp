#include "LogEntries.hpp"

#include <cstring>
#include <sstream>
#include <stdexcept>

#include "SmLog.hpp"

std::vector<std::string> logEntries(const char* logName) {
    constexpr AppID application = 3;
    constexpr unsigned readMode = 5;
    SmLog* const log = SmLog::getClientInstance(logName, application);
    if (log == nullptr) {
        throw std::runtime_error(std::string("no shared-memory log ") + logName);
    }
    std::string text(2U << 20, '\0');
    log->read(text.data(), static_cast<unsigned>(text.size()), 0, 0, readMode);
    std::istringstream lines(text.c_str());
    std::vector<std::string> entries;
    for (std::string line; std::getline(lines, line);) {
        entries.push_back(line.substr(line.find(' ') + 1));
    }
    return entries;
}

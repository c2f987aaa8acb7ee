#include "LogCollector.hpp"

#include "Shell.hpp"

namespace Korvel {

LogCollector::LogCollector(const std::string& dir) : collectorDir(dir) {
    executeCommand("mkdir -p " + dir);
}

LogCollector::~LogCollector() = default;

}  // namespace Korvel

#include "LogCollector.hpp"

#include <algorithm>

#include "Console.hpp"
#include "Shell.hpp"

namespace Korvel {

std::size_t LogCollector::gatheredByAll = 0;

LogCollector::LogCollector(const std::string& dir) : collectorDir(dir) {
    executeCommand("mkdir -p " + dir);
}

LogCollector::~LogCollector() {
    gatheredByAll -= gatheredBytes;
}

std::size_t LogCollector::room() {
    constexpr std::size_t largestSource = 16U << 20U;
    constexpr std::size_t largestCollection = 48U << 20U;
    return std::min(largestSource, largestCollection - std::min(largestCollection, gatheredByAll));
}

void LogCollector::count(const std::string& text) {
    gatheredBytes += text.size();
    gatheredByAll += text.size();
}

std::string LogCollector::gathered(std::string text, const std::string& sourceName) {
    const std::size_t limit = room();
    if (text.size() > limit) {
        fail(sourceName, " is larger than ", limit, " bytes, cut");
        text.resize(limit);
    }
    count(text);
    return text;
}

}  // namespace Korvel

#include "LogCollector.hpp"

#include <algorithm>

#include "Console.hpp"
#include "Shell.hpp"

namespace Korvel {

namespace {

constexpr std::size_t largestSource = 16U << 20U;
constexpr std::size_t largestCollection = 48U << 20U;

}  // namespace

std::size_t LogCollector::gatheredByAll = 0;

LogCollector::LogCollector(const std::string& dir) : collectorDir(dir) {
    executeCommand("mkdir -p " + dir);
}

LogCollector::~LogCollector() {
    gatheredByAll -= gatheredBytes;
}

std::size_t LogCollector::room() {
    return std::min(largestSource, largestCollection - std::min(largestCollection, gatheredByAll));
}

void LogCollector::count(const std::string& text) {
    const bool wasFull = gatheredByAll >= largestCollection;
    gatheredBytes += text.size();
    gatheredByAll += text.size();
    if (!wasFull && gatheredByAll >= largestCollection) {
        fail("The collection holds ", largestCollection, " bytes, what follows is left out");
    }
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

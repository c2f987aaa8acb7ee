#include "LogCollector.hpp"

#include <algorithm>

#include "Console.hpp"
#include "Shell.hpp"

namespace Korvel {

namespace {

constexpr std::size_t sourceSizeLimit = 16U << 20U;
constexpr std::size_t collectionSizeLimit = 48U << 20U;

}  // namespace

std::size_t LogCollector::totalBytes = 0;

LogCollector::LogCollector(const std::string& dir) : collectorDir(dir) {
    executeCommand("mkdir -p " + dir);
}

LogCollector::~LogCollector() {
    totalBytes -= collectedBytes;
}

std::size_t LogCollector::room() {
    return std::min(sourceSizeLimit, collectionSizeLimit - std::min(collectionSizeLimit, totalBytes));
}

void LogCollector::count(const std::string& text) {
    const bool wasFull = totalBytes >= collectionSizeLimit;
    collectedBytes += text.size();
    totalBytes += text.size();
    if (!wasFull && totalBytes >= collectionSizeLimit) {
        fail("The collection holds ", collectionSizeLimit, " bytes, what follows is left out");
    }
}

std::string LogCollector::cutToLimit(std::string text, const std::string& sourceName) {
    const std::size_t limit = room();
    if (text.size() > limit) {
        fail(sourceName, " is larger than ", limit, " bytes, cut");
        text.resize(limit);
    }
    count(text);
    return text;
}

}  // namespace Korvel

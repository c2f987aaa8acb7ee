#include "FileReader.hpp"

#include <algorithm>

#include "FileAccess.hpp"

namespace Korvel {

std::string readFileToString(const std::string& path) {
    std::string content;
    reportReading(path, readFile(path, content));
    return content;
}

unsigned getNumberOfLinesInFile(const std::string& path) {
    const std::string content = readFileToString(path);
    return static_cast<unsigned>(std::count(content.begin(), content.end(), '\n'));
}

std::string readFileFromLine(const std::string& path, unsigned line) {
    std::string content = readFileToString(path);
    std::size_t start = 0;
    for (unsigned skipped = 0; skipped < line; ++skipped) {
        const std::size_t lineEnd = content.find('\n', start);
        if (lineEnd == std::string::npos) {
            return {};
        }
        start = lineEnd + 1;
    }
    content.erase(0, start);
    return content;
}

}  // namespace Korvel

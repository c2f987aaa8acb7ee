#include "FileReader.hpp"

#include <algorithm>

#include "Console.hpp"
#include "InputFile.hpp"

namespace Korvel {

std::string readFileToString(const std::string& path) {
    std::optional<std::string> content = readWholeFile(path);
    if (!content) {
        fail("Error while opening ", path);
        return {};
    }
    if (errno != 0) {
        failErrno("Error while reading ", path, ": ");
    }
    return *std::move(content);
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

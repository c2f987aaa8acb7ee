#include "KorvelHelp.hpp"

#include <algorithm>
#include <array>
#include <regex>
#include <stdexcept>

#include "TestFiles.hpp"

namespace {

constexpr std::array titles{"Log Collection", "Actions", "Supervision", "Archive"};
const std::string actionSeparator = "    ==============\n";

std::string titleLine(const std::string& title) {
    return "  " + title + ":\n";
}

/// Where a title's line starts in the text. The end of the text if no title is left.
std::size_t firstTitle(const std::string& text, std::size_t from) {
    std::size_t first = text.size();
    for (const char* const title : titles) {
        first = std::min(first, text.find(titleLine(title), from));
    }
    return first;
}

/// Replaces the rest of the line after `start`.
void setLineEnd(std::string& text, const std::string& start, const std::string& value) {
    const std::size_t position = text.find(start) + start.size();
    text.replace(position, text.find('\n', position) - position, value);
}

/// The block as it is in the file, without the title.
std::string linesBelow(const std::string& title) {
    const std::string text = korvelHelp();
    const std::string line = titleLine(title);
    const std::size_t start = text.find(line);
    if (start == std::string::npos) {
        throw std::runtime_error("no help for " + title);
    }
    const std::size_t end = firstTitle(text, start + line.size());
    return text.substr(start + line.size(), end - start - line.size());
}

/// Lines of the file with `oldIndent` in front, rewritten for another caller.
std::string rewritten(const std::string& lines, std::size_t oldIndent, const std::string& indent,
                      const std::string& programName) {
    const std::regex blanks("^ {" + std::to_string(oldIndent) + "}", std::regex::multiline);
    const std::string indented = std::regex_replace(lines, blanks, indent);
    return std::regex_replace(indented, std::regex("\\bkorvel\\b"), programName);
}

/// An action's lines in the block of all actions.
std::string linesOfAction(const std::string& keyword) {
    const std::string block = linesBelow("Actions");
    const std::regex named("\\b" + keyword + "\\b");
    for (std::size_t start = 0; start < block.size();) {
        start += actionSeparator.size();
        const std::size_t end = std::min(block.find(actionSeparator, start), block.size());
        const std::string lines = block.substr(start, end - start);
        if (std::regex_search(lines.substr(0, lines.find('\n')), named)) {
            return lines;
        }
        start = end;
    }
    throw std::runtime_error("no help for " + keyword);
}

}  // namespace

std::string korvelHelp(const std::string& clientPath, const std::string& masterPath) {
    std::string text = contentOfFile(besideThisProgram("help.txt"));
    setLineEnd(text, "(optional path to the client socket, default: ", masterPath);
    setLineEnd(text, "(optional path to the master socket, default: ", clientPath);
    return text;
}

std::string commonArgumentsHelp(const std::string& clientPath, const std::string& masterPath) {
    const std::string text = korvelHelp(clientPath, masterPath);
    return text.substr(0, firstTitle(text, 0));
}

std::string managerHelp(const std::string& title, const std::string& indent, const std::string& programName) {
    constexpr std::size_t indentOfManagers = 4;
    return titleLine(title) + rewritten(linesBelow(title), indentOfManagers, indent, programName);
}

std::string actionHelp(const std::string& keyword, const std::string& indent,
                       const std::string& programName) {
    constexpr std::size_t indentOfActions = 6;
    return rewritten(linesOfAction(keyword), indentOfActions, indent, programName);
}

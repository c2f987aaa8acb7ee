#include "HeaderLine.hpp"

std::string headerLine(const std::string& title) {
    constexpr std::size_t width = 64;
    std::string line = "### " + title + " ";
    line.resize(width, '#');
    return line + "\n";
}

#include "Trim.hpp"

#include <algorithm>
#include <cctype>

namespace {

bool isNotSpace(unsigned char character) {
    return std::isspace(character) == 0;
}

}  // namespace

void ltrim(std::string& text) {
    text.erase(text.begin(), std::find_if(text.begin(), text.end(), isNotSpace));
}

void rtrim(std::string& text) {
    text.erase(std::find_if(text.rbegin(), text.rend(), isNotSpace).base(), text.end());
}

void trim(std::string& text) {
    rtrim(text);
    ltrim(text);
}

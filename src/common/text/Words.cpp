#include "Words.hpp"

#include <sstream>

namespace Korvel {

std::string getNthTokenFromString(const std::string& text, unsigned n) {
    std::istringstream words(text);
    std::string last;
    std::string word;
    for (unsigned i = 0; i < n && words >> word; ++i) {
        last = word;
    }
    return last;
}

}  // namespace Korvel

#include "Words.hpp"

#include "TextInput.hpp"

namespace Korvel {

std::string getNthTokenFromString(const std::string& text, unsigned n) {
    std::istringstream words = inputFrom(text);
    std::string last;
    std::string word;
    for (unsigned i = 0; i < n && words >> word; ++i) {
        last = word;
    }
    return last;
}

}  // namespace Korvel

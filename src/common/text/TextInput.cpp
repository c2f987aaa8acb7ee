#include "TextInput.hpp"

#include <utility>

namespace Korvel {

std::istringstream inputFrom(std::string text) {
    std::istringstream input(std::move(text));
    input.exceptions(std::ios::badbit);
    return input;
}

}  // namespace Korvel

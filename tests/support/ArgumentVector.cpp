#include "ArgumentVector.hpp"

#include <utility>

ArgumentVector::ArgumentVector(std::vector<std::string> arguments) : words(std::move(arguments)) {
    words.insert(words.begin(), "korvel");
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
}

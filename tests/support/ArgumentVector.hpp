#pragma once

#include <string>
#include <vector>

/// An argument count and vector as in main(), with the program name "korvel" in front.
class ArgumentVector {
public:
    explicit ArgumentVector(std::vector<std::string> arguments);

    int argc() const { return static_cast<int>(words.size()); }
    char** argv() { return pointers.data(); }

private:
    std::vector<std::string> words;
    std::vector<char*> pointers;
};

#pragma once

#include <iostream>
#include <sstream>
#include <string>

namespace Fuzz {

/// Takes what korvel writes to standard output and standard error, from construction to destruction.
class QuietConsole {
public:
    QuietConsole() : formerOut(std::cout.rdbuf(&text)), formerErr(std::cerr.rdbuf(&text)) {}
    QuietConsole(const QuietConsole&) = delete;
    QuietConsole& operator=(const QuietConsole&) = delete;
    QuietConsole(QuietConsole&&) = delete;
    QuietConsole& operator=(QuietConsole&&) = delete;
    ~QuietConsole() {
        std::cout.rdbuf(formerOut);
        std::cerr.rdbuf(formerErr);
    }

    std::string output() const { return text.str(); }

private:
    std::stringbuf text;
    std::streambuf* const formerOut;
    std::streambuf* const formerErr;
};

}  // namespace Fuzz

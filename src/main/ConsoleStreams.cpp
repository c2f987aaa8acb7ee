#include "ConsoleStreams.hpp"

#include <iostream>

#include <unistd.h>

namespace Korvel {

ConsoleStreams::ConsoleStreams()
    : out(STDOUT_FILENO),
      err(STDERR_FILENO),
      formerOut(std::cout.rdbuf(&out)),
      formerErr(std::cerr.rdbuf(&err)) {
}

ConsoleStreams::~ConsoleStreams() {
    std::cout.flush();
    std::cout.rdbuf(formerOut);
    std::cerr.rdbuf(formerErr);
}

}  // namespace Korvel

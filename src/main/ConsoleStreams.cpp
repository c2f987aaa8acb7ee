#include "ConsoleStreams.hpp"

#include <iostream>

#include <unistd.h>

namespace Korvel {

ConsoleStreams::ConsoleStreams()
    : out(STDOUT_FILENO),
      err(STDERR_FILENO),
      previousOut(std::cout.rdbuf(&out)),
      previousErr(std::cerr.rdbuf(&err)) {
}

ConsoleStreams::~ConsoleStreams() {
    std::cout.flush();
    std::cout.rdbuf(previousOut);
    std::cerr.rdbuf(previousErr);
}

}  // namespace Korvel

#include "Console.hpp"

namespace Korvel {
namespace {

int outputError = 0;

}  // namespace

void recordOutputFailure() {
    if (!std::cout && outputError == 0) {
        outputError = errno;
    }
}

void flushStandardOutput() {
    std::cout.flush();
    recordOutputFailure();
}

bool finishStandardOutput() {
    flushStandardOutput();
    return std::cout.good() || fail("Error while writing standard output: ", std::strerror(outputError));
}

}  // namespace Korvel

#include "MemoryPeak.hpp"

#include <algorithm>
#include <stdexcept>

#include <sys/wait.h>

#include "Program.hpp"

long peakMemoryKiB(const std::vector<std::string>& command) {
    const pid_t child = startProgram(command);
    long peak = 0;
    int status = 0;
    while (waitpid(child, &status, WNOHANG) == 0) {
        peak = std::max(peak, memoryKiB(child));
    }
    if (status != 0) {
        throw std::runtime_error("failed: " + command.front());
    }
    return peak;
}

#include "MemoryPeak.hpp"

#include <algorithm>
#include <fstream>
#include <stdexcept>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

pid_t start(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        execvp(arguments.front(), arguments.data());
        _exit(127);
    }
    return child;
}

long memoryKiB(pid_t process) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    long sum = 0;
    for (std::string word; status >> word;) {
        if (word == "RssAnon:" || word == "RssFile:") {
            long amount = 0;
            status >> amount;
            sum += amount;
        }
    }
    return sum;
}

}  // namespace

long peakMemoryKiB(const std::vector<std::string>& command) {
    const pid_t child = start(command);
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

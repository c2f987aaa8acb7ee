#include "Program.hpp"

#include <fstream>

#include <fcntl.h>
#include <unistd.h>

pid_t startProgram(std::vector<std::string> words, const std::function<void()>& prepare) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY | O_CLOEXEC), STDOUT_FILENO);
        prepare();
        execvp(arguments.front(), arguments.data());
        _exit(127);
    }
    return child;
}

long statusKiB(pid_t process, const std::set<std::string>& fields) {
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    long sum = 0;
    for (std::string word; status >> word;) {
        if (fields.contains(word)) {
            long amount = 0;
            status >> amount;
            sum += amount;
        }
    }
    return sum;
}

long memoryKiB(pid_t process) {
    return statusKiB(process, {"RssAnon:", "RssFile:"});
}

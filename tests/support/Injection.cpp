#include "Injection.hpp"

#include "SystemCalls.hpp"

Outcome runInjected(const Injection& injection, const std::vector<std::string>& command,
                    Surroundings surroundings) {
    std::vector<std::string> words{"strace", "--quiet=all", "-o", "/dev/null"};
    for (const std::string& fault : injection.faults) {
        words.insert(words.end(), {"-e", "inject=" + forThisProcessor(fault)});
    }
    if (!injection.path.empty()) {
        words.insert(words.end(), {"-P", injection.path});
    }
    if (injection.inChildren) {
        words.emplace_back("-f");
    }
    words.insert(words.end(), command.begin(), command.end());
    // The leak detector traces the process too, and a process can have only one tracer.
    surroundings.environment.insert({"ASAN_OPTIONS", "detect_leaks=0"});
    return run(words, surroundings);
}

#include "Trace.hpp"

#include "TestFiles.hpp"

Outcome runTraced(const std::string& selection, const std::vector<std::string>& command,
                  std::vector<std::string>& calls, bool withChildren) {
    const std::string file = "/tmp/calls";
    std::vector<std::string> words{"strace", "-o", file, "-e", "trace=" + selection};
    if (withChildren) {
        words.emplace_back("-f");
    }
    words.insert(words.end(), command.begin(), command.end());
    // The leak detector traces the process too, and a process can have only one tracer.
    const Outcome outcome = run(words, {.environment = {{"ASAN_OPTIONS", "detect_leaks=0"}}});
    calls = linesOfFile(file);
    return outcome;
}

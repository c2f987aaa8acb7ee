#include "Probe.hpp"

#include <filesystem>
#include <utility>

std::string testProgramsDir() {
    return std::filesystem::read_symlink("/proc/self/exe").parent_path();
}

std::vector<std::string> probeCommand(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), testProgramsDir() + "/common_probe");
    return arguments;
}

Outcome probe(std::vector<std::string> arguments, const Surroundings& surroundings) {
    return run(probeCommand(std::move(arguments)), surroundings);
}

Outcome probeInjected(const Injection& injection, std::vector<std::string> arguments,
                      const Surroundings& surroundings) {
    return runInjected(injection, probeCommand(std::move(arguments)), surroundings);
}

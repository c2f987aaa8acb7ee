#include "Probe.hpp"

#include <utility>

#include "TestFiles.hpp"

std::vector<std::string> probeCommand(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), besideThisProgram("common_probe"));
    return arguments;
}

Outcome probe(std::vector<std::string> arguments, const Surroundings& surroundings) {
    return run(probeCommand(std::move(arguments)), surroundings);
}

Outcome probeInjected(const Injection& injection, std::vector<std::string> arguments,
                      const Surroundings& surroundings) {
    return runInjected(injection, probeCommand(std::move(arguments)), surroundings);
}

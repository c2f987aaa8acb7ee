#include "Boardsim.hpp"

std::vector<std::string> boardsimCommand(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), BOARDSIM_PROGRAM);
    return arguments;
}

Outcome boardsim(std::vector<std::string> arguments, const Surroundings& surroundings) {
    return run(boardsimCommand(std::move(arguments)), surroundings);
}

Outcome onBoard(std::vector<std::string> options, const std::string& script) {
    options.insert(options.end(), {"--", "sh", "-c", script});
    return boardsim(options);
}

#include "BoardCommand.hpp"

#include <cstdlib>
#include <filesystem>

#include "TestFiles.hpp"

namespace {

const std::string commandFolder = "/tmp/commands";

}  // namespace

BoardCommand::BoardCommand(const std::string& name, const std::string& script) {
    if (const char* const path = std::getenv("PATH")) {
        searchPath = path;
    }
    writeScript(commandFolder + "/" + name, script);
    ::setenv("PATH", (commandFolder + ":" + searchPath).c_str(), 1);
}

BoardCommand::~BoardCommand() {
    ::setenv("PATH", searchPath.c_str(), 1);
    std::filesystem::remove_all(commandFolder);
}

void writeScript(const std::string& path, const std::string& script) {
    writeFile(path, "#!/bin/sh\n" + script + "\n");
    std::filesystem::permissions(path, std::filesystem::perms::owner_all);
}

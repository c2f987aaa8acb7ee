#include "StackProcess.hpp"

#include <chrono>
#include <filesystem>
#include <thread>

#include "TestFiles.hpp"

namespace fs = std::filesystem;

namespace {

const std::string ready = "ready\n";

/// The path of the program. The process list shows it.
std::string linkToProgram(const std::string& name) {
    const fs::path folder = "/tmp/stack";
    fs::create_directories(folder);
    fs::remove(folder / name);
    fs::create_symlink(besideThisProgram("stack_program"), folder / name);
    return folder / name;
}

void awaitOutput(const Process& process, const std::string& expected) {
    while (process.outSoFar() != expected) {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

}  // namespace

StackProcess::StackProcess(const std::string& name, const std::string& onSignal,
                           const std::string& argument) {
    process.emplace(std::vector<std::string>{linkToProgram(name), onSignal, argument});
    awaitOutput(*process, ready);
}

void StackProcess::awaitSignal() const {
    awaitOutput(*process, ready + "handled\n");
}

bool StackProcess::wasSignalled() const {
    return process->outSoFar() != ready;
}

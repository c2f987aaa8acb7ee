#include "StuckFolder.hpp"

#include <chrono>
#include <csignal>
#include <thread>

StuckFolder::StuckFolder(const std::string& path, const std::string& operation)
    : server(std::make_unique<Process>(std::vector<std::string>{STUCK_FS, path, operation})) {
    while (server->outSoFar() != "ready\n") {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

void StuckFolder::stop() const {
    ::kill(server->pid(), SIGSTOP);
}

void StuckFolder::resume() const {
    ::kill(server->pid(), SIGCONT);
}

void StuckFolder::end() {
    server.reset();
}

#include "StuckFolder.hpp"

#include <chrono>
#include <csignal>
#include <thread>
#include <utility>

#include <sys/mount.h>

StuckFolder::StuckFolder(std::string path, const std::string& operation)
    : folder(std::move(path)),
      server(std::make_unique<Process>(std::vector<std::string>{STUCK_FS, folder, operation})) {
    while (server->outSoFar() != "ready\n") {
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

StuckFolder::~StuckFolder() {
    end();
}

void StuckFolder::stop() const {
    ::kill(server->pid(), SIGSTOP);
}

void StuckFolder::resume() const {
    ::kill(server->pid(), SIGCONT);
}

void StuckFolder::end() {
    if (server != nullptr) {
        server.reset();
        ::umount2(folder.c_str(), MNT_DETACH);
    }
}

#include "ChildProcess.hpp"

#include <csignal>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

namespace {

void check(int error, const std::string& what) {
    if (error != 0) {
        throw std::system_error(error, std::generic_category(), what);
    }
}

}  // namespace

ChildProcess::ChildProcess() {
    ::posix_spawn_file_actions_init(&actions);
    ::posix_spawnattr_init(&attributes);
}

ChildProcess::~ChildProcess() {
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&actions);
}

void ChildProcess::give(int descriptor, int number) {
    check(::posix_spawn_file_actions_adddup2(&actions, descriptor, number), "descriptor");
}

void ChildProcess::silence(int number) {
    check(::posix_spawn_file_actions_addopen(&actions, number, "/dev/null", O_RDWR, 0), "/dev/null");
}

void ChildProcess::restoreSignals(std::initializer_list<int> signals) {
    sigset_t restored{};
    sigemptyset(&restored);
    for (const int each : signals) {
        sigaddset(&restored, each);
    }
    check(::posix_spawnattr_setsigdefault(&attributes, &restored), "signals");
    flags |= POSIX_SPAWN_SETSIGDEF;
}

pid_t ChildProcess::start(const std::string& program, std::vector<std::string> arguments) {
    check(::posix_spawnattr_setflags(&attributes, flags), "flags");
    std::vector<char*> pointers;
    for (std::string& each : arguments) {
        pointers.push_back(each.data());
    }
    pointers.push_back(nullptr);
    pid_t child = 0;
    check(::posix_spawnp(&child, program.c_str(), &actions, &attributes, pointers.data(), environ), program);
    return child;
}

#include "ChildProcess.hpp"

#include <system_error>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace Boardsim {
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

void ChildProcess::passDescriptor(int descriptor, int number) {
    check(::posix_spawn_file_actions_adddup2(&actions, descriptor, number), "descriptor");
}

void ChildProcess::openNull(int number) {
    check(::posix_spawn_file_actions_addopen(&actions, number, "/dev/null", O_RDWR, 0), "/dev/null");
}

void ChildProcess::startProcessGroup() {
    flags |= POSIX_SPAWN_SETPGROUP;
}

pid_t ChildProcess::start(const std::string& program, std::vector<std::string> arguments) {
    check(::posix_spawnattr_setflags(&attributes, flags), "flags");
    std::vector<char*> pointers;
    pointers.reserve(arguments.size() + 1);
    for (std::string& each : arguments) {
        pointers.push_back(each.data());
    }
    pointers.push_back(nullptr);
    pid_t child = 0;
    check(::posix_spawnp(&child, program.c_str(), &actions, &attributes, pointers.data(), environ), program);
    return child;
}

int shellStatus(int waitStatus) {
    return WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : signalledStatus + WTERMSIG(waitStatus);
}

}  // namespace Boardsim

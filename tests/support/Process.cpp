#include "Process.hpp"

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

#include <fcntl.h>
#include <grp.h>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include "StartedCommands.hpp"

namespace {

constexpr int cannotStart = 127;
constexpr int signalBase = 128;

std::string contentOf(int file) {
    std::string text;
    std::array<char, 65536> piece{};
    ssize_t count = 0;
    while ((count = ::pread(file, piece.data(), piece.size(), static_cast<off_t>(text.size()))) > 0) {
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
    return text;
}

std::vector<char*> pointersTo(std::vector<std::string>& words) {
    std::vector<char*> pointers;
    pointers.reserve(words.size() + 1);
    for (std::string& word : words) {
        pointers.push_back(word.data());
    }
    pointers.push_back(nullptr);
    return pointers;
}

/// False if this process lacks the privilege.
bool becomeUser(uid_t user) {
    return ::setgroups(0, nullptr) == 0 && ::setgid(user) == 0 && ::setuid(user) == 0;
}

/// In the child, between fork and exec.
[[noreturn]] void become(std::vector<std::string> command, const Surroundings& surroundings, int out,
                         int err) {
    ::dup2(out, STDOUT_FILENO);
    ::dup2(surroundings.together ? out : err, STDERR_FILENO);
    if (!surroundings.standardOutput.empty()) {
        const int file = ::open(surroundings.standardOutput.c_str(), O_WRONLY | O_CLOEXEC);
        ::dup2(file, STDOUT_FILENO);
    }
    for (const int descriptor : surroundings.closedDescriptors) {
        ::close(descriptor);
    }
    for (const auto& [resource, value] : surroundings.limits) {
        const rlimit limit{.rlim_cur = value, .rlim_max = value};
        ::setrlimit(static_cast<__rlimit_resource>(resource), &limit);
    }
    for (const auto& [name, value] : surroundings.environment) {
        ::setenv(name.c_str(), value.c_str(), 1);
    }
    for (const int signal : surroundings.ignoredSignals) {
        std::signal(signal, SIG_IGN);
    }
    if (surroundings.user && !becomeUser(*surroundings.user)) {
        ::_exit(cannotStart);
    }
    ::execvp(command.front().c_str(), pointersTo(command).data());
    ::_exit(cannotStart);
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
    return stream << "exit status " << outcome.status << "\nstandard output:\n"
                  << outcome.out << "standard error:\n"
                  << outcome.err;
}

Process::Process(const std::vector<std::string>& command, const Surroundings& surroundings)
    : out(::memfd_create("stdout", MFD_CLOEXEC)), err(::memfd_create("stderr", MFD_CLOEXEC)) {
    noteStartedCommand(command, surroundings.environment);
    child = ::fork();
    if (child == 0) {
        become(command, surroundings, out, err);
    }
    if (child < 0 || out < 0 || err < 0) {
        throw std::runtime_error("cannot start " + command.front());
    }
}

Process::~Process() {
    if (child > 0) {
        ::kill(child, SIGKILL);
        ::waitpid(child, nullptr, 0);
    }
    ::close(out);
    ::close(err);
}

std::string Process::outSoFar() const {
    return contentOf(out);
}

Outcome Process::wait() {
    int status = 0;
    ::waitpid(child, &status, 0);
    child = -1;
    return {WIFEXITED(status) ? WEXITSTATUS(status) : signalBase + WTERMSIG(status), contentOf(out),
            contentOf(err)};
}

Outcome run(const std::vector<std::string>& command, const Surroundings& surroundings) {
    return Process(command, surroundings).wait();
}

Outcome korvel(std::vector<std::string> arguments, const Surroundings& surroundings) {
    arguments.insert(arguments.begin(), "korvel");
    return run(arguments, surroundings);
}

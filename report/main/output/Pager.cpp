#include "Pager.hpp"

#include <array>
#include <csignal>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <vector>

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "Environment.hpp"
#include "SystemCall.hpp"

namespace Report {
namespace {

constexpr std::array userSignals{SIGINT, SIGQUIT, SIGPIPE};

std::vector<std::string> wordsOf(std::string_view command) {
    constexpr std::string_view blanks = " \t";
    std::vector<std::string> words;
    while (true) {
        command.remove_prefix(std::min(command.find_first_not_of(blanks), command.size()));
        if (command.empty()) {
            return words;
        }
        const std::size_t end = std::min(command.find_first_of(blanks), command.size());
        words.emplace_back(command.substr(0, end));
        command.remove_prefix(end);
    }
}

/// The arguments for a program. A shell runs only what needs one, so that a missing pager is noticed.
std::vector<std::string> argumentsFor(const std::string& command) {
    const bool needsShell = command.find_first_of("|&;<>()$`\\\"'*?[#~=%{}!\n") != std::string::npos;
    return needsShell ? std::vector<std::string>{"/bin/sh", "-c", command} : wordsOf(command);
}

/// How the pager starts: with `input` as its standard input and with the default reaction to signals.
class SpawnSettings {
public:
    explicit SpawnSettings(int input) {
        ::posix_spawn_file_actions_init(&actions);
        ::posix_spawn_file_actions_adddup2(&actions, input, STDIN_FILENO);
        ::posix_spawnattr_init(&attributes);
        sigset_t signals;
        sigemptyset(&signals);
        for (const int signal : userSignals) {
            sigaddset(&signals, signal);
        }
        ::posix_spawnattr_setsigdefault(&attributes, &signals);
        ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGDEF);
    }
    ~SpawnSettings() {
        ::posix_spawn_file_actions_destroy(&actions);
        ::posix_spawnattr_destroy(&attributes);
    }
    SpawnSettings(const SpawnSettings&) = delete;
    SpawnSettings& operator=(const SpawnSettings&) = delete;
    SpawnSettings(SpawnSettings&&) = delete;
    SpawnSettings& operator=(SpawnSettings&&) = delete;

    posix_spawn_file_actions_t actions{};
    posix_spawnattr_t attributes{};
};

pid_t start(std::vector<std::string> words, int input) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words) {
        arguments.push_back(word.data());
    }
    arguments.push_back(nullptr);
    const SpawnSettings settings(input);
    pid_t process = -1;
    const int reason = ::posix_spawnp(&process, arguments.front(), &settings.actions, &settings.attributes,
                                      arguments.data(), environ);
    if (reason != 0) {
        throw std::system_error(reason, std::generic_category(), words.front());
    }
    return process;
}

}  // namespace

std::string pagerCommand() {
    for (const char* const name : {"KORVEL_PAGER", "PAGER"}) {
        if (std::getenv(name) != nullptr) {
            const std::string_view command = environment(name);
            return wordsOf(command).empty() || command == "cat" ? std::string() : std::string(command);
        }
    }
    return usualPager;
}

Pager::Pager(const std::string& command) {
    std::array<int, 2> ends{};
    Base::checked(::pipe2(ends.data(), O_CLOEXEC), command);
    const Base::UniqueFd output(ends[0]);
    input.reset(ends[1]);
    ::setenv("LESS", "FRX", 0);
    ::setenv("LV", "-c", 0);
    process = start(argumentsFor(command), output.get());
    for (const int signal : userSignals) {
        std::signal(signal, SIG_IGN);
    }
}

Pager::~Pager() {
    input.reset();
    if (process > 0) {
        Base::uninterrupted([&] { return ::waitpid(process, nullptr, 0); });
    }
}

}  // namespace Report

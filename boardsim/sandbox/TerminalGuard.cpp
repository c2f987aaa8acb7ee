#include "TerminalGuard.hpp"

#include <csignal>

#include <fcntl.h>
#include <unistd.h>

#include "UniqueFd.hpp"

namespace Boardsim {

TerminalGuard::TerminalGuard() : foreground(::tcgetpgrp(STDIN_FILENO)) {
}

TerminalGuard::~TerminalGuard() {
    if (foreground != ::getpgrp()) {
        return;  // no terminal, or we were in the background from the start
    }
    sigset_t background{};
    sigemptyset(&background);
    sigaddset(&background, SIGTTOU);
    ::pthread_sigmask(SIG_BLOCK, &background, nullptr);  // otherwise tcsetpgrp() would stop this program
    ::tcsetpgrp(STDIN_FILENO, foreground);
    ::pthread_sigmask(SIG_UNBLOCK, &background, nullptr);
}

bool TerminalGuard::hasTerminal() {
    return Base::UniqueFd(::open("/dev/tty", O_RDWR | O_CLOEXEC)).get() != -1;
}

}  // namespace Boardsim

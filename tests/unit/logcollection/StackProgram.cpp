// The program of such a process. The shell runs its first argument for each SIGUSR1. It starts no other
// process before that, because a child would have its name for a moment.

#include <csignal>
#include <cstdlib>
#include <iostream>

int main(int /*argc*/, char** argv) {
    sigset_t signals{};
    sigemptyset(&signals);
    sigaddset(&signals, SIGUSR1);
    ::sigprocmask(SIG_BLOCK, &signals, nullptr);
    std::cout << "ready" << std::endl;
    for (;;) {
        int signal = 0;
        ::sigwait(&signals, &signal);
        if (std::system(argv[1]) == 0) {
            std::cout << "handled" << std::endl;
        }
    }
}

#include "SignalDescriptor.hpp"

#include <csignal>

#include <sys/signalfd.h>
#include <unistd.h>

#include "SystemCall.hpp"

namespace Boardsim {

Base::UniqueFd openSignalDescriptor(std::initializer_list<int> signals) {
    sigset_t wanted{};
    sigemptyset(&wanted);
    for (const int each : signals) {
        sigaddset(&wanted, each);
    }
    ::pthread_sigmask(SIG_BLOCK, &wanted, nullptr);
    return Base::UniqueFd(Base::checked(::signalfd(-1, &wanted, SFD_CLOEXEC), "signalfd"));
}

int readSignal(const Base::UniqueFd& signals) {
    signalfd_siginfo information{};
    Base::checked(
        Base::uninterrupted([&] { return ::read(signals.get(), &information, sizeof information); }),
        "signalfd");
    return static_cast<int>(information.ssi_signo);
}

}  // namespace Boardsim

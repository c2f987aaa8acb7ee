#pragma once

#include <cerrno>
#include <cstdint>
#include <functional>
#include <optional>

#include <sys/socket.h>
#include <sys/syscall.h>

/// A system call that the kernel refuses, for failures that no file and no peer can cause.
struct FailingCall {
    /// Narrows the failure to calls with this value in one of their arguments.
    struct Argument {
        unsigned index;  ///< from 0
        std::uint32_t value;
    };

    long number;  ///< SYS_...
    int error;    ///< the errno value that callers get
    std::optional<Argument> argument = {};
};

/// The call behind poll(), which some processors only have in its wider form.
#ifdef SYS_poll
constexpr long pollCall = SYS_poll;
#else
constexpr long pollCall = SYS_ppoll;
#endif

/// No netlink socket is to be had, as where all descriptors are in use.
constexpr FailingCall noNetlinkSocket{
    .number = SYS_socket, .error = EMFILE, .argument = FailingCall::Argument{0, AF_NETLINK}};

/// Receives that do not block find nothing, whatever was announced; one that blocks is let through.
constexpr FailingCall nothingThere{
    .number = SYS_recvfrom, .error = EAGAIN, .argument = FailingCall::Argument{3, MSG_DONTWAIT}};

/// Runs `work` to its end on a thread of its own on which, and in whose children, `call` fails.
/// Throws std::system_error where the kernel cannot be told so; an exception of `work` ends the program.
void runFailing(const FailingCall& call, const std::function<void()>& work);

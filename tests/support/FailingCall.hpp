#pragma once

#include <cerrno>
#include <cstdint>
#include <functional>
#include <optional>

#include <sys/socket.h>

#include "SystemCalls.hpp"

/// A system call that the kernel refuses. For failures that no file and no peer can cause.
struct FailingCall {
    /// Limits the failure to calls with this value in one of their arguments.
    struct Argument {
        unsigned index;  ///< from 0
        std::uint32_t value;
    };

    long number;  ///< SYS_...
    int error;    ///< the errno value that callers get
    std::optional<Argument> argument = {};
};

/// Opening a netlink socket fails, as if all descriptors were in use.
constexpr FailingCall noNetlinkSocket{
    .number = SYS_socket, .error = EMFILE, .argument = FailingCall::Argument{0, AF_NETLINK}};

/// Receives that do not block find nothing, even after an announcement. A receive that blocks works.
constexpr FailingCall nothingThere{
    .number = receiveCall, .error = EAGAIN, .argument = FailingCall::Argument{3, MSG_DONTWAIT}};

/// Runs `work` to its end on a thread of its own. There, and in its children, `call` fails. Throws
/// std::system_error if the kernel refuses the filter. An exception of `work` ends the program.
void runFailing(const FailingCall& call, const std::function<void()>& work);

#include "FailingCall.hpp"

#include <array>
#include <cerrno>
#include <cstddef>
#include <system_error>
#include <thread>
#include <vector>

#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>

namespace {

constexpr auto load = static_cast<std::uint16_t>(BPF_LD | BPF_W | BPF_ABS);
constexpr auto jumpIfEqual = static_cast<std::uint16_t>(BPF_JMP | BPF_JEQ | BPF_K);
constexpr auto result = static_cast<std::uint16_t>(BPF_RET | BPF_K);

/// Two instructions. They compare a word of the call's record with this value. If it differs, the instruction
/// after the next `remaining` ones lets the call through.
void addCondition(std::vector<sock_filter>& program, std::size_t offset, std::uint32_t value,
                  std::uint8_t remaining) {
    program.push_back({load, 0, 0, static_cast<std::uint32_t>(offset)});
    program.push_back({jumpIfEqual, 0, remaining, value});
}

std::vector<sock_filter> filterFor(const FailingCall& call) {
    std::vector<sock_filter> program;
    addCondition(program, offsetof(seccomp_data, nr), static_cast<std::uint32_t>(call.number),
                 call.argument ? 3 : 1);
    if (call.argument) {
        // The lower half of an argument comes first: the processors at hand are little-endian.
        const std::size_t offset = offsetof(seccomp_data, args) + call.argument->index * sizeof(__u64);
        addCondition(program, offset, call.argument->value, 1);
    }
    program.push_back({result, 0, 0, SECCOMP_RET_ERRNO | static_cast<std::uint32_t>(call.error)});
    program.push_back({result, 0, 0, SECCOMP_RET_ALLOW});
    return program;
}

/// Applies to the calling thread from now on. Returns 0 or the errno value.
int refuse(const FailingCall& call) {
    std::vector<sock_filter> program = filterFor(call);
    const sock_fprog filter{.len = static_cast<unsigned short>(program.size()), .filter = program.data()};
    if (::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 ||
        ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) != 0) {
        return errno;
    }
    return 0;
}

}  // namespace

void runFailing(const FailingCall& call, const std::function<void()>& work) {
    int reason = 0;
    std::thread([&] {
        reason = refuse(call);
        if (reason == 0) {
            work();
        }
    }).join();
    if (reason != 0) {
        throw std::system_error(reason, std::generic_category(), "seccomp");
    }
}

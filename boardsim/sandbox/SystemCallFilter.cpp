#include "SystemCallFilter.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <memory>
#include <span>
#include <system_error>

#include <asm/ioctls.h>
#include <seccomp.h>
#include <sys/mman.h>

#include "SystemCall.hpp"

namespace Boardsim {
namespace {

using Filter = std::unique_ptr<void, decltype(&::seccomp_release)>;

/// The ABIs that one processor runs side by side. Each needs its own rules, because a program can change its
/// ABI from call to call.
constexpr std::array<std::uint32_t, 3> x86Family{SCMP_ARCH_X86_64, SCMP_ARCH_X86, SCMP_ARCH_X32};
constexpr std::array<std::uint32_t, 2> armFamily{SCMP_ARCH_AARCH64, SCMP_ARCH_ARM};

/// ioctl() requests that put characters into a terminal's input, as if typed.
constexpr std::array<std::uint64_t, 2> inputRequests{TIOCSTI, TIOCLINUX};

/// The user's keys belong to the session, which the sandbox shares.
constexpr std::array keyCalls{SCMP_SYS(add_key), SCMP_SYS(request_key), SCMP_SYS(keyctl)};

/// A login sets the user's groups, which needs a privilege. All users of a board are the user who started it.
constexpr std::array groupCalls{SCMP_SYS(setgroups), SCMP_SYS(setgroups32)};

constexpr std::uint32_t refusal = SCMP_ACT_ERRNO(EPERM);
constexpr std::uint32_t success = SCMP_ACT_ERRNO(0);  // without doing anything

void check(int result, const char* what) {
    if (result < 0) {
        throw std::system_error(-result, std::generic_category(), what);
    }
}

void addFamily(const Filter& filter, std::span<const std::uint32_t> family) {
    if (std::ranges::find(family, ::seccomp_arch_native()) == family.end()) {
        return;
    }
    for (const std::uint32_t each : family) {
        const int result = ::seccomp_arch_add(filter.get(), each);
        check(result == -EEXIST ? 0 : result, "seccomp_arch_add");
    }
}

void addRules(const Filter& filter) {
    for (const std::uint64_t request : inputRequests) {
        // The kernel reads only the low 32 bits.
        const scmp_arg_cmp isRequest{1, SCMP_CMP_MASKED_EQ, std::numeric_limits<std::uint32_t>::max(),
                                     request};
        check(::seccomp_rule_add_array(filter.get(), refusal, SCMP_SYS(ioctl), 1, &isRequest),
              "seccomp_rule_add");
    }
    for (const int call : keyCalls) {
        check(::seccomp_rule_add_array(filter.get(), refusal, call, 0, nullptr), "seccomp_rule_add");
    }
    for (const int call : groupCalls) {
        check(::seccomp_rule_add_array(filter.get(), success, call, 0, nullptr), "seccomp_rule_add");
    }
}

}  // namespace

Base::UniqueFd openSystemCallFilter() {
    const Filter filter(::seccomp_init(SCMP_ACT_ALLOW), &::seccomp_release);
    if (!filter) {
        throw std::system_error(ENOMEM, std::generic_category(), "seccomp_init");
    }
    check(::seccomp_attr_set(filter.get(), SCMP_FLTATR_ACT_BADARCH, SCMP_ACT_KILL_PROCESS),
          "seccomp_attr_set");
    addFamily(filter, x86Family);
    addFamily(filter, armFamily);
    addRules(filter);
    Base::UniqueFd program(Base::checked(::memfd_create("filter", MFD_CLOEXEC), "memfd_create"));
    check(::seccomp_export_bpf(filter.get(), program.get()), "seccomp_export_bpf");
    Base::checked(::lseek(program.get(), 0, SEEK_SET), "memfd");
    return program;
}

}  // namespace Boardsim

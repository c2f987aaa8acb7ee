#include "SandboxRefusal.hpp"

#include <algorithm>
#include <array>
#include <optional>
#include <sstream>
#include <string_view>
#include <system_error>

#include <linux/capability.h>
#include <unistd.h>

#include "TextFile.hpp"

namespace Boardsim {
namespace {

/// The number in a file; nothing if this machine does not have the setting.
std::optional<long> setting(const std::string& path) {
    try {
        long number = 0;
        std::istringstream text(readTextFile(path));
        return text >> number ? std::optional(number) : std::nullopt;
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

bool mayAdministrate() {
    constexpr std::string_view key = "CapEff:";
    constexpr unsigned administration = 1U << CAP_SYS_ADMIN;
    unsigned long long capabilities = 0;
    for (const std::string& line : linesOf(readTextFile("/proc/self/status"))) {
        if (line.starts_with(key)) {
            std::istringstream(line.substr(key.size())) >> std::hex >> capabilities;
        }
    }
    return (capabilities & administration) != 0;
}

bool isRoot() {
    return ::geteuid() == 0;
}

struct Cause {
    bool (*applies)();
    const char* text;
};

/// The first cause that applies is reported.
constexpr std::array causes{
    Cause{[] { return isRoot() && !mayAdministrate(); },
          "no sandbox: root lacks the capability CAP_SYS_ADMIN, as in most containers\n"
          "run boardsim outside the container, or give the container more privileges\n"
          "(docker, podman: --privileged)"},
    Cause{[] { return !isRoot() && setting("/proc/sys/user/max_user_namespaces") == 0; },
          "no sandbox: user namespaces are turned off (user.max_user_namespaces = 0)\n"
          "as root: sysctl user.max_user_namespaces=10000; or run boardsim as root"},
    Cause{[] { return !isRoot() && setting("/proc/sys/kernel/unprivileged_userns_clone") == 0; },
          "no sandbox: only root may create user namespaces (kernel.unprivileged_userns_clone = 0)\n"
          "as root: sysctl kernel.unprivileged_userns_clone=1; or run boardsim as root"},
    Cause{[] { return !isRoot() && setting("/proc/sys/kernel/apparmor_restrict_unprivileged_userns") == 1; },
          "no sandbox: AppArmor lets only programs with a profile create user namespaces\n"
          "as root: install the profile docs/apparmor/boardsim (it says how), or allow all programs:\n"
          "sysctl kernel.apparmor_restrict_unprivileged_userns=0"},
    Cause{[] { return true; },
          "no sandbox: bwrap gives the reason above\n"
          "the sandbox needs user namespaces, or root with its capabilities\n"
          "if a container forbids both, run boardsim outside the container"},
};

}  // namespace

std::string sandboxRefusal() {
    return std::ranges::find_if(causes, [](const Cause& cause) { return cause.applies(); })->text;
}

}  // namespace Boardsim

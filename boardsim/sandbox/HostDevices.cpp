#include "HostDevices.hpp"

#include <fcntl.h>
#include <sched.h>
#include <sys/mount.h>

#include "SystemCall.hpp"

namespace Boardsim {
namespace {

/// The devices that bubblewrap's option --dev takes from the host.
constexpr const char* sharedDevices[] = {"/dev/null",   "/dev/zero",    "/dev/full",
                                         "/dev/random", "/dev/urandom", "/dev/tty"};

}  // namespace

void protectHostDevices() {
    if (::unshare(CLONE_NEWNS) == -1) {
        return;
    }
    Base::checked(::mount(nullptr, "/", nullptr, MS_REC | MS_SLAVE, nullptr), "mounts of its own");
    mount_attr readOnly{};
    readOnly.attr_set = MOUNT_ATTR_RDONLY;
    for (const char* device : sharedDevices) {
        Base::checked(::mount(device, device, nullptr, MS_BIND, nullptr), device);
        Base::checked(::mount_setattr(AT_FDCWD, device, 0, &readOnly, sizeof readOnly), device);
    }
}

}  // namespace Boardsim

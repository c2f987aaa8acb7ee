#include "RootFileSystem.hpp"

#include <cerrno>

#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>
#ifdef SYS_openat2
#include <linux/openat2.h>
#endif

#include "UniqueFd.hpp"

namespace Korvel {

#ifdef SYS_openat2

bool liesOnRootFileSystem(const char* path) {
    open_how how{};
    how.flags = O_PATH | O_CLOEXEC;
    how.resolve = RESOLVE_NO_XDEV;
    if (path[0] != '/') {
        return false;
    }
    const Base::UniqueFd entry(static_cast<int>(::syscall(SYS_openat2, AT_FDCWD, path, &how, sizeof how)));
    return entry || errno == ENOENT;
}

#else  // kernel headers older than Linux 5.6

bool liesOnRootFileSystem(const char* /*path*/) {
    return false;
}

#endif

}  // namespace Korvel

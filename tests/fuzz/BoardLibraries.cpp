// Both libraries of the board. The stand-ins would create files in /dev/shm.

#include "BoardLibraries.hpp"

#include <cerrno>
#include <cstdio>

#include "Vask.h"

namespace {

class EmptyLog final : public SmLog {
public:
    void write(int level, const char* tag, const char* format, ...) override
        __attribute__((format(printf, 4, 5))) {
        std::va_list arguments;
        va_start(arguments, format);
        vwrite(level, tag, format, arguments);
        va_end(arguments);
    }

    void vwrite(int /*level*/, const char* /*tag*/, const char* format, std::va_list arguments) override
        __attribute__((format(printf, 4, 0))) {
        // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): va_start has initialized it
        std::vsnprintf(nullptr, 0, format, arguments);
    }

    unsigned read(char* /*buffer*/, unsigned /*size*/, AppID /*app*/, unsigned start,
                  unsigned /*mode*/) override {
        return start;
    }

    bool overlap(unsigned /*lastPosition*/, unsigned /*newPosition*/) override { return false; }
};

EmptyLog emptyLog;
SmLog* sharedLog = &emptyLog;

}  // namespace

namespace Fuzz {

void setSharedLog(SmLog& log) {
    sharedLog = &log;
}

}  // namespace Fuzz

SmLog* SmLog::getClientInstance(const char* /*name*/, AppID /*app*/) {
    return sharedLog;
}

/// Without physical memory, korvel reads none.
int vask_cma_process_init() {
    return ENODEV;
}

int vask_cma_phy_to_virt(unsigned int /*physical*/, void** /*virtualPointer*/) {
    return EFAULT;
}

int vask_security_is_secure_env(int* secure) {
    *secure = 0;
    return 0;
}

#include "MemoryUse.hpp"

#include <cstddef>  // defines __GLIBC__

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace Korvel {

void returnMemoryEarly() {
#ifdef __GLIBC__
    constexpr int largeBlock = 128 * 1024;  // the default, which glibc raises unless it is set
    ::mallopt(M_MMAP_THRESHOLD, largeBlock);
#endif
}

}  // namespace Korvel

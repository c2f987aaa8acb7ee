#include "MemoryUse.hpp"

#include <cstddef>  // tells which C library this is

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace Korvel {

void returnMemoryEarly() {
#ifdef __GLIBC__
    constexpr int largeBlock = 128 * 1024;  // the library's own value, which it raises unless it is set
    ::mallopt(M_MMAP_THRESHOLD, largeBlock);
#endif
}

}  // namespace Korvel

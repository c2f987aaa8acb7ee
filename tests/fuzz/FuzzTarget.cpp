#include "FuzzTarget.hpp"

#include <cstdio>
#include <cstdlib>

namespace Fuzz {

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

}  // namespace Fuzz

#include "FuzzTarget.hpp"

#include <cstdio>
#include <cstdlib>

namespace ReportFuzz {

void require(bool holds, const char* what) {
    if (!holds) {
        std::fprintf(stderr, "does not hold: %s\n", what);
        std::abort();
    }
}

}  // namespace ReportFuzz

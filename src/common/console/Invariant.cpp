#include "Invariant.hpp"

#include <cstdlib>

#include "Console.hpp"

namespace Korvel {

void requireInvariant(bool holds, const char* condition, const char* sourceFile) {
    if (!holds) {
        fail(sourceFile, ": Assertion \"", condition, "\" failed.");
        std::abort();
    }
}

}  // namespace Korvel

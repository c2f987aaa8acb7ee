#include "Arguments.hpp"

#include <algorithm>

namespace Korvel {

void removeArgument(int index, int argc, char** argv) {
    std::copy(argv + index + 1, argv + argc, argv + index);
    argv[argc - 1] = nullptr;
}

}  // namespace Korvel

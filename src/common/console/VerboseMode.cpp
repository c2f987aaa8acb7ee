#include "VerboseMode.hpp"

namespace Korvel {
namespace {

bool verboseMode = false;

}  // namespace

void setVerboseMode(bool enabled) {
    verboseMode = enabled;
}

bool isVerboseMode() {
    return verboseMode;
}

}  // namespace Korvel

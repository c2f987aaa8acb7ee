#include "SignalDispositions.hpp"

#include <csignal>

namespace Korvel {
namespace {

void letPass(int /*signal*/) {
}

}  // namespace

void setSignalDispositions() {
    // Ignored, as a parent may have left it, it would keep system() from learning how a command ended.
    std::signal(SIGCHLD, SIG_DFL);
    // A file that meets the limit on sizes is a failed write. Not ignored, which child processes would
    // inherit.
    std::signal(SIGXFSZ, letPass);
}

}  // namespace Korvel

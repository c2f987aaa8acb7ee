#include "SignalDispositions.hpp"

#include <csignal>

#include "HarmlessSignal.hpp"

namespace Korvel {

void setSignalDispositions() {
    // Ignored, as a parent may have left it, it would keep system() from learning how a command ended.
    std::signal(SIGCHLD, SIG_DFL);
    makeHarmless(SIGXFSZ);  // a file that meets the limit on sizes is a failed write
    makeHarmless(SIGPIPE);  // a job that has begun ends, whoever has stopped reading what it prints
}

}  // namespace Korvel

#include "SignalDispositions.hpp"

#include <csignal>

#include "HarmlessSignal.hpp"

namespace Korvel {

void setSignalDispositions() {
    // If the parent left SIGCHLD ignored, the exit status of commands would be lost.
    std::signal(SIGCHLD, SIG_DFL);
    makeHarmless(SIGXFSZ);  // beyond the file size limit, writes fail
    makeHarmless(SIGPIPE);  // a job continues to its end even if nobody reads its output
}

}  // namespace Korvel

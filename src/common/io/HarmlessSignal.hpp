#pragma once

namespace Korvel {

/// Makes a signal harmless. Uses a handler, because child processes would inherit SIG_IGN.
void makeHarmless(int signal);

}  // namespace Korvel

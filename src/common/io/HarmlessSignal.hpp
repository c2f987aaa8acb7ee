#pragma once

namespace Korvel {

/// From now on the signal ends nothing. By a handler: child processes would inherit that it is ignored.
void makeHarmless(int signal);

}  // namespace Korvel

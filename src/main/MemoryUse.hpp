#pragma once

namespace Korvel {

/// Has large blocks of memory go back to the system as soon as they are free. The C library otherwise keeps
/// them in its heap once it has seen a few, and texts that grow leave holes there.
void returnMemoryEarly();

}  // namespace Korvel

#pragma once

namespace Korvel {

/// Makes the C library return large memory blocks to the system as soon as they are freed. By default, it
/// soon keeps them in its heap, where growing strings leave holes.
void returnMemoryEarly();

}  // namespace Korvel

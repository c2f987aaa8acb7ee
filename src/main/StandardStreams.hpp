#pragma once

namespace Korvel {

/// Opens /dev/null on each of the descriptors 0 to 2 that is closed, so that no socket or file of this
/// program gets one of these numbers. Call it before opening anything else.
void openMissingStandardStreams();

}  // namespace Korvel

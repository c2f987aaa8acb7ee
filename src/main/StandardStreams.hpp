#pragma once

namespace Korvel {

/// Opens /dev/null on each of the descriptors 0 to 2 that the caller left closed, so that no socket or file
/// of this program is taken for one of them. Needs to come before anything else is opened.
void openMissingStandardStreams();

}  // namespace Korvel

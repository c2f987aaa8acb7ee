#pragma once

namespace Korvel {

/// Seeds rand(), from which the identifiers of requests come, so that an answer to an earlier run is never
/// taken for one to this run. Does not wait for the kernel's random source, which is empty early at boot.
void seedRequestIdentifiers();

}  // namespace Korvel

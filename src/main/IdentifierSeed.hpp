#pragma once

namespace Korvel {

/// Seeds rand(), which generates request identifiers, so that responses to an earlier run are not mistaken
/// for responses to this run. Does not wait for the kernel's random source, which may not be ready early in
/// the boot.
void seedRequestIdentifiers();

}  // namespace Korvel

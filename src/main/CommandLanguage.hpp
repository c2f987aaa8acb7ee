#pragma once

namespace Korvel {

/// Sets LC_ALL=C for child processes, so that the output of commands does not depend on the operator's
/// language.
void setCommandLanguage();

}  // namespace Korvel

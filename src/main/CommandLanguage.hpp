#pragma once

namespace Korvel {

/// Has every command that the run starts speak the language that scripts know, whatever the operator's is.
void setCommandLanguage();

}  // namespace Korvel

#pragma once

#include "SmLog.hpp"

namespace Fuzz {

/// Every log name leads to `log` from now on. Before, to a log that is empty and formats each entry.
void setSharedLog(SmLog& log);

}  // namespace Fuzz

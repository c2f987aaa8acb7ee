#pragma once

#include "Limits.hpp"

namespace ReportFuzz {

/// So small that inputs can reach them.
Report::Limits smallLimits();

}  // namespace ReportFuzz

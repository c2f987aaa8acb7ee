#include "SmallLimits.hpp"

namespace ReportFuzz {

Report::Limits smallLimits() {
    Report::Limits limits;
    limits.maxBytes = std::size_t{1} << 17;
    limits.maxMembers = 50;
    limits.maxLine = 1000;
    limits.maxName = 300;
    limits.maxDepth = 4;
    return limits;
}

}  // namespace ReportFuzz

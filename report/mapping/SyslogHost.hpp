#pragma once

#include <string_view>

namespace Report {

/// The host in a line of syslog, with a time of the older or the newer form, such as
/// `Nov 22 08:30:33 HOST TAG[1]: ...`, `2026-11-22T08:30:33Z HOST TAG: ...` and `<14>1 2026-...Z HOST ...`;
/// empty if the line names none. It points into the line.
std::string_view syslogHost(std::string_view line);

}  // namespace Report

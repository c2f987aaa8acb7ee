#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "Package.hpp"
#include "PartTable.hpp"

namespace Report {

/// Texts up to this size are read whole when a package is judged; of longer ones, only the end.
inline constexpr std::size_t wholeTextSize = std::size_t{64} << 10;

/// Bytes that korvel takes of one file or reply.
inline constexpr std::uint64_t sourceSizeLimit = std::uint64_t{16} << 20;

/// The text of a part if it was kept and is small, else its last bytes.
std::string evidenceTextOf(const Part& part);

/// Whether evidenceTextOf() returns all of the text.
bool hasWholeText(const Part& part);

/// Whether the text ends inside a line at the border of a memory page. A full file system cuts there.
bool endsAtPage(const Part& part);

/// Whether a log in shared memory has almost the size at which korvel stops to read it.
bool isSharedLogFull(const Part& part);

/// Whether the text is mostly bytes that are not text.
bool isBinary(const Part& part);

/// Whether korvel or the kernel always writes something to this file, so that it is never empty on purpose.
bool isNeverEmpty(const PartPlace& place);

/// Whether a part can be a log of the platform, of any form.
bool isLinuxLog(const PartPlace& place);

/// The state of a part by its own contents. Age and other parts are not considered.
State stateOfContent(const Part& part, const PartPlace& place);

}  // namespace Report

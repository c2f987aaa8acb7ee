#pragma once

#include <cstddef>
#include <string>

#include "ArchiveFiles.hpp"
#include "RecordedLog.hpp"

/// A shared-memory log, and what the archiver made of it.
class FollowedLog {
public:
    static constexpr std::size_t threshold = 2097152;  ///< bytes of runtime.log at which it is rotated

    FollowedLog(const char* logName, const std::string& shortName) : log(logName), files(shortName) {}

    // Both are false while a rotation is under way, and for a log without entries.

    /// Whether everything is archived that was written to the log since the last piece but one was complete.
    bool hasNewest();

    /// Whether the archive is, byte for byte, all that was written to the log. After a third rotation it
    /// cannot be.
    bool hasAll();

    RecordedLog log;
    const ArchiveFiles files;
};

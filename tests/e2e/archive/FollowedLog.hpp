#pragma once

#include <cstddef>
#include <string>

#include "ArchiveFiles.hpp"
#include "RecordedLog.hpp"

/// A shared-memory log and its archive.
class FollowedLog {
public:
    static constexpr std::size_t threshold = 2097152;  ///< bytes of runtime.log at which it is rotated

    FollowedLog(const char* logName, const std::string& shortName) : log(logName), files(shortName) {}

    // Both are false during a rotation and for a log without entries.

    /// True if the archive holds all entries since the last piece but one was complete.
    bool hasNewest();

    /// True if the archive equals the log's whole text, byte for byte. It cannot after a third rotation.
    bool hasAll();

    RecordedLog log;
    const ArchiveFiles files;
};

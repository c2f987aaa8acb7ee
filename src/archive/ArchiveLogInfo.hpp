#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ArchiveMgr.hpp"
#include "OutputFile.hpp"
#include "SmLog.hpp"

namespace Korvel {

/// Archives one shared-memory log in files of its own directory:
/// - startup.log.gz: the first 2 MiB, or slightly more, since construction,
/// - middle.log.gz: the latest complete later piece of that size,
/// - runtime.log: the text after that piece.
///
/// A piece is removed from runtime.log only after its compressed copy is complete. If the process is killed,
/// only the previous piece in middle.log.gz can be lost. A new object for the same directory truncates
/// runtime.log.
///
/// Reports failures through the manager. Does nothing more after a file could not be opened or written.
class ArchiveMgr::ArchiveLogInfo {
public:
    /// Creates the directory `shortName` in /tmp/korvel/archive/ and truncates runtime.log. The manager and
    /// `log` must outlive this object. If `log` is null, nothing is archived.
    ArchiveLogInfo(ArchiveMgr& manager, const std::string& shortName, SmLog* log);

    /// Appends the text that was logged since the last call, at most `size` bytes. `scratch` is a work buffer
    /// of `size` bytes.
    void updateLog(char* scratch, unsigned size);

private:
    bool openRuntimeFile(OutputFile::Mode mode);
    bool write(std::string_view text);
    void rotate();

    ArchiveMgr& mgr;
    OutputFile runtimeFile;
    std::uint32_t newPosition = 0;
    std::uint32_t lastPosition = 0;
    std::uint32_t bytesWritten = 0;  // log text in the current runtime.log
    bool startupArchived = false;
    const std::string directory;
    const std::string runtimePath;
    const std::string startupPath;
    const std::string middlePath;
    SmLog* smLog;  // owned by the library
};

}  // namespace Korvel

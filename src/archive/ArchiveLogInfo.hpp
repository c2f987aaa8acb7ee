#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "ArchiveMgr.hpp"
#include "OutputFile.hpp"
#include "SmLog.hpp"

namespace Korvel {

/// Follows one shared-memory log into files of a folder of its own:
/// - startup.log.gz: the first 2 MiB, or a little more, since this object was made,
/// - middle.log.gz: of the later pieces of that size the last one that is complete,
/// - runtime.log: what came after that. A piece leaves it only when its compressed copy is whole: at whatever
///   moment the process is ended, no text is lost but that of the piece before in middle.log.gz. The next
///   object for the folder starts runtime.log anew.
/// What cannot be done is reported through the manager. After a file that could not be opened or written it
/// is idle.
class ArchiveMgr::ArchiveLogInfo {
public:
    /// Makes the folder `shortName` below /tmp/korvel/archive/ and starts runtime.log anew. The manager must
    /// outlive this object; so must `log`, which may be null: nothing is followed then.
    ArchiveLogInfo(ArchiveMgr& manager, const std::string& shortName, SmLog* log);

    /// Takes over what the log has got since the last call, as much as `size` holds. `scratch` is for
    /// its use and has `size` bytes.
    void updateLog(char* scratch, unsigned size);

private:
    bool openRuntimeFile(OutputFile::Mode mode);
    bool write(std::string_view text);
    void rotate();

    ArchiveMgr& mgr;
    OutputFile runtimeFile;
    std::uint32_t newPosition = 0;
    std::uint32_t lastPosition = 0;
    std::uint32_t bytesWritten = 0;  // of the log's text, to the present runtime.log
    bool startupArchived = false;
    const std::string directory;
    const std::string runtimePath;
    const std::string startupPath;
    const std::string middlePath;
    SmLog* smLog;  // the library's
};

}  // namespace Korvel

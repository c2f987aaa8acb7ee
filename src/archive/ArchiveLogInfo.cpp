#include "ArchiveLogInfo.hpp"

#include <cstring>

#include "Shell.hpp"
#include "SmLogs.hpp"

namespace Korvel {
namespace {

constexpr std::uint32_t rotationThreshold = 2097152;
constexpr std::string_view overlapWarning = "WARNING: Shared memory overlap. Log is missing entries\n";

}  // namespace

ArchiveMgr::ArchiveLogInfo::ArchiveLogInfo(ArchiveMgr& manager, const std::string& shortName, SmLog* log)
    : mgr(manager),
      directory("/tmp/korvel/archive/" + shortName),
      runtimePath(directory + "/runtime.log"),
      startupPath(directory + "/startup.log"),
      middlePath(directory + "/middle.log"),
      smLog(log) {
    executeCommand("mkdir -p " + directory);  // a missing directory makes opening the file fail
    if (openRuntimeFile(OutputFile::Mode::truncate)) {
        mgr.logf(logInformation, "%s open for monitoring", runtimePath.c_str());
    }
}

void ArchiveMgr::ArchiveLogInfo::updateLog(char* scratch, unsigned size) {
    if (smLog == nullptr || runtimeFile.hasFailed() || scratch == nullptr || size == 0) {
        return;
    }
    scratch[0] = '\0';
    newPosition = smLog->read(scratch, size, 0, lastPosition, smLogReadMode);
    if (smLog->overlap(lastPosition, newPosition)) {
        write(overlapWarning);
    }
    if (newPosition == lastPosition) {
        return;
    }
    const std::string_view text(scratch, ::strnlen(scratch, size));
    if (write(text)) {
        bytesWritten += static_cast<std::uint32_t>(text.size());
        if (bytesWritten >= rotationThreshold) {
            rotate();
        }
    }
    lastPosition = newPosition;
}

/// Reports only the first write that fails.
bool ArchiveMgr::ArchiveLogInfo::write(std::string_view text) {
    if (runtimeFile.hasFailed()) {
        return false;
    }
    runtimeFile.write(text);
    if (runtimeFile.hasFailed()) {
        mgr.logf(logError, "Error while writing to  %s", runtimePath.c_str());
        return false;
    }
    return true;
}

void ArchiveMgr::ArchiveLogInfo::rotate() {
    static_cast<void>(runtimeFile.close());  // all text was written; a failed close changes nothing
    const std::string& target = startupArchived ? middlePath : startupPath;
    const bool archived =
        executeCommand("cp " + runtimePath + " " + target) && executeCommand("/bin/gzip -f " + target);
    if (archived) {
        startupArchived = true;
        bytesWritten = 0;
    }
    openRuntimeFile(archived ? OutputFile::Mode::truncate : OutputFile::Mode::append);
}

bool ArchiveMgr::ArchiveLogInfo::openRuntimeFile(OutputFile::Mode mode) {
    runtimeFile = OutputFile(runtimePath, mode);
    if (!runtimeFile.isOpen()) {
        mgr.logf(logError, "Error while opening %s", runtimePath.c_str());
    }
    return runtimeFile.isOpen();
}

}  // namespace Korvel

#pragma once

#include <memory>
#include <string>

#include "IManager.hpp"
#include "Log.hpp"
#include "SmLog.hpp"

namespace Korvel {

/// "archive": follows the dispatcher's and SYSLIB's shared-memory logs into files below /tmp/korvel/archive/
/// until the process is ended from outside. Problems are reported in the dispatcher's shared-memory log; only
/// of a shell command that fails standard error tells as well.
class ArchiveMgr : public IManager {
public:
    class ArchiveLogInfo;

    ArchiveMgr();
    ArchiveMgr(const ArchiveMgr&) = delete;
    ArchiveMgr& operator=(const ArchiveMgr&) = delete;
    ArchiveMgr(ArchiveMgr&&) = delete;
    ArchiveMgr& operator=(ArchiveMgr&&) = delete;
    ~ArchiveMgr() override;

    bool detectKeywords(int argc, char** argv) override;
    void printHelpMsg(const std::string& indent, const std::string& programName) override;

    /// Does not return.
    bool run() override;

    /// One entry in the dispatcher's shared-memory log, tag "Archive". `level` is a LogLvl. `format` and what
    /// follows are as for printf, without a line end. Nothing happens before run().
    void logf(int level, const char* format, ...) const __attribute__((format(printf, 3, 4)));

private:
    std::string buffer;          // both logs are read into it
    SmLog* logClient = nullptr;  // the library's
    std::unique_ptr<ArchiveLogInfo> dispatcherLog;
    std::unique_ptr<ArchiveLogInfo> syslibLog;
};

}  // namespace Korvel

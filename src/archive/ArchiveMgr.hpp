#pragma once

#include <memory>
#include <string>

#include "IManager.hpp"
#include "Log.hpp"
#include "SmLog.hpp"

namespace Korvel {

/// "archive": archives the dispatcher's and SYSLIB's shared-memory logs in files in /tmp/korvel/archive/
/// until the process is terminated. Reports failures in the dispatcher's shared-memory log; failed shell
/// commands are reported only on standard error.
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

    /// Writes one entry with the tag "Archive" to the dispatcher's shared-memory log. `level` is a LogLvl.
    /// `format` and its arguments are as for printf, without a line end. Does nothing before run().
    void logf(int level, const char* format, ...) const __attribute__((format(printf, 3, 4)));

private:
    std::string buffer;          // read buffer for both logs
    SmLog* logClient = nullptr;  // owned by the library
    std::unique_ptr<ArchiveLogInfo> dispatcherLog;
    std::unique_ptr<ArchiveLogInfo> syslibLog;
};

}  // namespace Korvel

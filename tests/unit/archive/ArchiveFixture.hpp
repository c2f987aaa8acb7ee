#pragma once

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "ArchiveFiles.hpp"
#include "ArchiveLogInfo.hpp"
#include "ArchiveMgr.hpp"
#include "Printed.hpp"
#include "RecordedLog.hpp"

/// The archive of the dispatcher's log, updated in single steps. The archiver's reports in the log itself
/// need a run of the whole manager and are not covered here.
class ArchiveFixture : public testing::Test {
protected:
    static constexpr unsigned threshold = 2097152;    ///< bytes of runtime.log at which it is rotated
    static constexpr unsigned wholeBuffer = 2097152;  ///< bytes

    ArchiveFixture();

    /// Starts to follow the log. Returns the output.
    Printed follow();

    /// One step with a buffer of `size` bytes. Returns the output.
    Printed update(unsigned size = wholeBuffer);

    /// Writes exactly `bytes` to the log and archives them, in as many steps as the size of the log needs.
    /// Returns the output.
    Printed archive(unsigned bytes);

    RecordedLog log{"dispatcher_log_memory"};
    const ArchiveFiles files{"dispatcher"};

private:
    Korvel::ArchiveMgr manager;
    std::optional<Korvel::ArchiveMgr::ArchiveLogInfo> follower;
};

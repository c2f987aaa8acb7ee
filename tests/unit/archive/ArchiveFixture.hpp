#pragma once

#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "ArchiveFiles.hpp"
#include "ArchiveLogInfo.hpp"
#include "ArchiveMgr.hpp"
#include "Printed.hpp"
#include "RecordedLog.hpp"

/// The archive of the dispatcher's log, taken over in single steps. What the archiver reports in the log
/// itself needs a run of the whole manager and is not seen here.
class ArchiveFixture : public testing::Test {
protected:
    static constexpr unsigned threshold = 2097152;    ///< bytes of runtime.log at which it is rotated
    static constexpr unsigned wholeBuffer = 2097152;  ///< bytes

    ArchiveFixture();

    /// Begins to follow the log. What is printed on the way.
    Printed follow();

    /// One step with a buffer of `size` bytes. What is printed on the way.
    Printed update(unsigned size = wholeBuffer);

    /// Writes exactly `bytes` to the log and takes them over, in as many steps as the log's size makes
    /// necessary. What is printed on the way.
    Printed archive(unsigned bytes);

    RecordedLog log{"dispatcher_log_memory"};
    const ArchiveFiles files{"dispatcher"};

private:
    Korvel::ArchiveMgr manager;
    std::optional<Korvel::ArchiveMgr::ArchiveLogInfo> follower;
};

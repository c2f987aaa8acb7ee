// The interface of src/archive.

#include <concepts>
#include <string>

#include <gtest/gtest.h>

#include "ArchiveLogInfo.hpp"
#include "ArchiveMgr.hpp"

namespace {

using Korvel::ArchiveMgr;
using Korvel::LogLvl;
using std::same_as;

static_assert(std::derived_from<ArchiveMgr, Korvel::IManager> && std::default_initializable<ArchiveMgr>);
static_assert(requires(ArchiveMgr & manager, int argc, char** argv, const std::string& text) {
    { manager.detectKeywords(argc, argv) } -> same_as<bool>;
    { manager.printHelpMsg(text, text) } -> same_as<void>;
    { manager.run() } -> same_as<bool>;
});
static_assert(requires(const ArchiveMgr& manager, LogLvl level, int number, const char* text) {
    { manager.logf(level, "%s", text) } -> same_as<void>;
    { manager.logf(number, "%s", text) } -> same_as<void>;
});

static_assert(std::constructible_from<ArchiveMgr::ArchiveLogInfo, ArchiveMgr&, const std::string&, SmLog*>);
static_assert(requires(ArchiveMgr::ArchiveLogInfo & log, char* buffer, unsigned size) {
    { log.updateLog(buffer, size) } -> same_as<void>;
});

TEST(ArchiveInterface, NamesTheManager) {
    EXPECT_EQ(ArchiveMgr().getName(), "Archive");
}

}  // namespace

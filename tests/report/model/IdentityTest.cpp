#include <chrono>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Description.hpp"
#include "LoadedPackage.hpp"
#include "MemorySource.hpp"
#include "Names.hpp"
#include "PackageBuilder.hpp"
#include "PackageLoader.hpp"
#include "SidecarError.hpp"
#include "UniqueFd.hpp"

namespace ReportTest {
namespace {

using Report::Kind;
using Report::LoadOptions;
using Report::Package;

constexpr std::time_t packingTime = 1795336233;  // 2026-11-22 08:30:33 UTC

std::string smallPackage() {
    return PackageBuilder().at(packingTime).file("./linux/system.log", "Nov 22 10:00:00 a: b\n").tgz();
}

/// The first line of a description without the source: board, time, kind, zone, sidecar.
std::string identityOf(const Package& package) {
    const std::string text = describe(package);
    const std::size_t start = text.find(", board") + 2;
    return text.substr(start, text.find('\n') - start);
}

TEST(IdentityTest, FollowsFromTheNameOfTheFile) {
    const struct {
        std::string file;
        std::string board;
        std::string kind;
    } cases[] = {
        {"board-7.tgz", "board-7", ""},
        {"board-7.tar.gz", "board-7", ""},
        {"board-7.gz", "board-7", ""},
        {"board-7", "board-7", ""},
        {"board-7.tgz.previous", "board-7", ""},
        {"board.7.zip", "board.7.zip", ""},
        {"board-7.tgz.gz", "board-7.tgz", ""},
        {"netfp_logs.tgz", "-", "pkg-trs"},
        {"netfp_logs_sup.tgz", "-", "pkg-sup"},
        {"netfp_logs_sup.tgz.previous", "-", "pkg-sup"},
        {"netfp_logs_post_mortem.tar.gz", "-", "pkg-pm"},
        {"netfp_logs_shutdown.gz", "-", "pkg-sdown"},
        {"netfp_logs_261122_083033.tgz", "-", "pkg"},
        {"netfp_logs_261122_08303.tgz", "netfp_logs_261122_08303", ""},
        {"netfp_logs_261122_0830333.tgz", "netfp_logs_261122_0830333", ""},
        {"netfp_logs_261122_08303x.tgz", "netfp_logs_261122_08303x", ""},
        {"netfp_logs_sup (1).tgz", "netfp_logs_sup (1)", ""},
    };
    for (const auto& [file, board, kind] : cases) {
        EXPECT_EQ(identityOf(load(smallPackage(), {}, file)), std::string("board ")
                                                                  .append(board)
                                                                  .append(", 2026-11-22 08:30:33, kind ")
                                                                  .append(kind)
                                                                  .append(", zone -, sidecar absent"))
            << file;
    }
}

TEST(IdentityTest, FollowsFromTheOptionsBeforeAnythingElse) {
    LoadOptions options;
    options.board = "chosen";
    options.kind = Kind::shutdown;
    EXPECT_EQ(identityOf(load(smallPackage(), options, "netfp_logs.tgz")),
              "board chosen, 2026-11-22 08:30:33, kind pkg-sdown, zone -, sidecar absent");
}

TEST(IdentityTest, OfANestedPackageIsThatOfItsOwnMembersAndOfTheBoard) {
    const std::string inner = PackageBuilder().at(packingTime - 100).file("./fuse/HistoryLog.log", "").tgz();
    const Package package = load(PackageBuilder()
                                     .at(packingTime - 50)
                                     .file("./ti/netfp_proxy.log", "")
                                     .at(packingTime)
                                     .file("./netfp_logs_post_mortem.tgz", inner)
                                     .tgz());
    EXPECT_EQ(identityOf(package), "board board-7, 2026-11-22 08:29:43, kind , zone -, sidecar absent");
    EXPECT_EQ(identityOf(package.nested.at(0)),
              "board board-7, 2026-11-22 08:28:53, kind pkg-pm, zone -, sidecar absent");
}

TEST(IdentityTest, HasTheNewestTimeOfAFile) {
    const std::string package = PackageBuilder()
                                    .at(packingTime)
                                    .file("./a", "")
                                    .at(packingTime + 2)
                                    .file("./b", "")
                                    .at(packingTime + 1)
                                    .file("./c", "")
                                    .at(packingTime + 9)
                                    .directory("./d/")
                                    .symbolicLink("./e", "a")
                                    .tgz();
    EXPECT_EQ(describe(load(package).time), "2026-11-22 08:30:35");
    EXPECT_EQ(
        describe(load(PackageBuilder().pax(paxRecord("mtime", "1795336233.5")).file("./a", "").tgz()).time),
        "2026-11-22 08:30:33.5");
    EXPECT_EQ(describe(load(PackageBuilder().directory("./").tgz()).time), "-");
}

TEST(IdentityTest, HasNoTimeOfWhatIsNestedTooDeeply) {
    LoadOptions options;
    options.limits.maxDepth = 1;
    const std::string inner = PackageBuilder().file("./a", "").tgz();
    const Package package = load(
        PackageBuilder().at(packingTime - 9).file("./a", "").at(packingTime).file("./b.tgz", inner).tgz(),
        options);
    EXPECT_EQ(describe(package.time), "2026-11-22 08:30:24");
}

TEST(IdentityTest, OfStandardInputIsUnknown) {
    const TemporaryFolder folder;
    const std::filesystem::path before = std::filesystem::current_path();
    const Base::UniqueFd standardInput(::dup(STDIN_FILENO));
    const Base::UniqueFd file(::open(folder.write("package", smallPackage()).c_str(), O_RDONLY | O_CLOEXEC));
    folder.write("-.run", "");
    std::filesystem::current_path(folder.path("."));
    ::dup2(file.get(), STDIN_FILENO);
    const Package package = loadFile("-");
    LoadOptions named;
    named.runFile = "-.run";
    ::lseek(STDIN_FILENO, 0, SEEK_SET);
    const Package withSidecar = loadFile("-", named);
    ::dup2(standardInput.get(), STDIN_FILENO);
    std::filesystem::current_path(before);
    EXPECT_EQ(identityOf(package), "board -, 2026-11-22 08:30:33, kind , zone -, sidecar absent");
    EXPECT_EQ(package.board, std::nullopt);  // and not "-"
    EXPECT_EQ(withSidecar.sidecarState, Report::SidecarState::unreadable);
}

TEST(IdentityTest, ShowsAClockThatWasNotSet) {
    const std::time_t now = std::chrono::system_clock::to_time_t(testTime);
    const struct {
        std::time_t time;
        bool unset;
    } cases[] = {
        {0, true},           {1262303999, true},  // 2009-12-31 23:59:59
        {1262304000, false},                      // 2010-01-01 00:00:00
        {now, false},        {now + 300, false},  // two clocks that are set still differ
        {now + 301, true},   {4102444800, true},  // 2100-01-01 00:00:00
    };
    for (const auto& [time, unset] : cases) {
        const std::string inner = PackageBuilder().at(time).file("./a", "").tgz();
        EXPECT_EQ(load(inner).clockUnset, unset) << time;
        const Package outer =
            load(PackageBuilder().at(packingTime).file("./a", "").file("./b.tgz", inner).tgz());
        EXPECT_EQ(outer.nested.at(0).clockUnset, unset) << time;
    }
    EXPECT_FALSE(load(PackageBuilder().tgz()).clockUnset);
}

/// A folder with a package and its sidecar.
class SidecarTest : public ::testing::Test {
protected:
    SidecarTest() : bytes(smallPackage()), path(folder.write("board-7.tgz", bytes)) {}

    std::string sha256() const { return loadFile(path).sha256; }
    std::string identity(const LoadOptions& options = {}) const {
        return identityOf(loadFile(path, options));
    }
    /// With these keys, or with other text.
    std::string identityWith(const std::string& keys) const {
        folder.write("board-7.tgz.run", "format: 1\nsha256: " + sha256() + "\n" + keys + "\n");
        return identity();
    }

    TemporaryFolder folder;
    std::string bytes;
    std::string path;
};

TEST_F(SidecarTest, NamesBoardTimeAndZone) {
    EXPECT_EQ(identityWith(""), "board board-7, 2026-11-22 08:30:33, kind , zone -, sidecar used");
    EXPECT_EQ(
        identityWith("board: b\nbegan: 2026-11-22T08:30:00Z\nended: 2026-11-22T08:31:00.5Z\nzone: +02:00\n"),
        "board b, 2026-11-22 08:31:00.5, kind , zone +02:00, sidecar used");
    EXPECT_EQ(identityWith("began: 2026-11-22T08:30:00Z\nended: never\nboard:\nzone: Mars/Phobos\n"),
              "board board-7, 2026-11-22 08:30:00, kind , zone -, sidecar used");
    EXPECT_EQ(identityWith("ended: 1970-01-01T00:00:09Z\n"),
              "board board-7, 1970-01-01 00:00:09 (clock not set), kind , zone -, sidecar used");
    LoadOptions options;
    options.board = "chosen";
    identityWith("board: b\n");
    EXPECT_EQ(loadFile(path, options).board, "chosen");
}

TEST_F(SidecarTest, TellsInWhichZoneAndYearSyslogWrites) {
    identityWith("zone: Europe/Helsinki\nended: 2026-11-22T08:31:00Z\n");
    EXPECT_EQ(entriesOf(loadFile(path), "linux/system"), "2026-11-22 08:00:00 a: b\n");
    identityWith("zone: -05:00\nended: 2026-01-01T08:31:00Z\n");
    EXPECT_EQ(entriesOf(loadFile(path), "linux/system"), "2025-11-22 15:00:00 a: b\n");
}

TEST_F(SidecarTest, CountsForNestedPackagesToo) {
    const std::string outer = PackageBuilder().file("./netfp_logs_post_mortem.tgz", bytes).tgz();
    folder.write("board-7.tgz", outer);
    identityWith("board: b\nzone: +02:00\nended: 2026-11-22T08:31:00Z\n");
    const Package nested = loadFile(path).nested.at(0);
    EXPECT_EQ(identityOf(nested), "board b, 2026-11-22 08:30:33, kind pkg-pm, zone +02:00, sidecar absent");
    EXPECT_EQ(entriesOf(nested, "linux/system"), "2026-11-22 08:00:00 a: b\n");
}

TEST_F(SidecarTest, IsUsedOnlyIfItBelongsToThePackage) {
    const std::string used = "board b, 2026-11-22 08:30:33, kind , zone -, sidecar used";
    const std::string other = "board board-7, 2026-11-22 08:30:33, kind , zone -, sidecar ";
    std::string upperCase = sha256();
    for (char& digit : upperCase) {
        digit = static_cast<char>(::toupper(digit));
    }
    const struct {
        std::string text;
        std::string identity;
    } cases[] = {
        {"format: 1\nboard: b\nsha256: " + sha256() + "\n\nstandard error", used},
        {"format: 1\r\nboard: b\r\nsha256: " + upperCase + "\r\n\r\n", used},
        {"format: 1\nboard: b\n\n", other + "foreign: it has no checksum of the package"},
        {"format: 1\nboard: b\nsha256: 0\n\n", other + "foreign: its checksum is not the package's"},
        {"", other + "unreadable: no empty line after the keys"},
        {"format: 1\nsha256: " + sha256() + "\n", other + "unreadable: no empty line after the keys"},
        {"format: 1\nsha256: " + sha256(), other + "unreadable: no empty line after the keys"},
        {"\n", other + "unreadable: no key `format`"},
        {"sha256: " + sha256() + "\n\n", other + "unreadable: no key `format`"},
        {"format: 2\n\n", other + "unreadable: unknown format `2`"},
        {"format: 1\nformat: 1\n\n", other + "unreadable: the key `format` twice"},
        {"format: 1\nno key\n\n", other + "unreadable: a line that is not `key: value`"},
        {"format: 1\n: value\n\n", other + "unreadable: a line that is not `key: value`"},
        {"format: 1\nNo Key: value\n\n", other + "unreadable: a line that is not `key: value`"},
        {std::string("\0\xff\n\n", 4), other + "unreadable: a line that is not `key: value`"},
        {std::string((std::size_t{1} << 20) + 1, '\n'), other + "unreadable: it is larger than 1 MiB"},
    };
    for (const auto& [text, identity] : cases) {
        folder.write("board-7.tgz.run", text);
        EXPECT_EQ(this->identity(), identity) << text.substr(0, 100);
    }
}

TEST_F(SidecarTest, IsForeignIfThePackageWasNotReadToItsEnd) {
    folder.write("board-7.tgz.run", "format: 1\nboard: b\nsha256:\n\n");
    LoadOptions options;
    options.limits.maxTime = std::chrono::milliseconds(0);
    const Package package = loadFile(path, options);
    EXPECT_EQ(package.sidecarError,
              "the package's checksum is unknown, because the package was not read to its end");
    EXPECT_EQ(package.board, "board-7");
}

TEST_F(SidecarTest, IsTheOneThatTheUserNames) {
    const std::string used = "board b, 2026-11-22 08:30:33, kind , zone -, sidecar used";
    const std::string other = "board board-7, 2026-11-22 08:30:33, kind , zone -, sidecar ";
    LoadOptions named;
    named.runFile = folder.path("elsewhere");
    EXPECT_THROW(identity(named), Report::SidecarError);
    folder.write("elsewhere", "format: 1\nboard: b\nsha256: " + sha256() + "\n\n");
    EXPECT_EQ(identity(named), used);
    EXPECT_EQ(identity(), other + "absent");
    identityWith("board: b\n");
    EXPECT_EQ(identity(), used);
    LoadOptions none;
    none.useRun = false;
    EXPECT_EQ(identity(none), other + "absent");
}

TEST_F(SidecarTest, IsARegularFileUnlessTheUserNamesIt) {
    const std::string other = "board board-7, 2026-11-22 08:30:33, kind , zone -, sidecar ";
    ASSERT_EQ(::mkfifo(folder.path("board-7.tgz.run").c_str(), 0600), 0);
    EXPECT_EQ(identity(), other + "unreadable: Invalid argument");
    LoadOptions named;
    named.runFile = folder.path(".");
    EXPECT_THROW(identity(named), Report::SidecarError);
}

TEST(SidecarParserTest, KeepsEverythingThatTheSidecarHolds) {
    std::string error;
    const auto sidecar = Report::parseSidecar(
        "format: 1\ncommand: korvel pkg-sup: x\nempty:\nnew-key_2:value\n"
        "probe: date: Sun Nov 22\nprobe: df: /tmp: 3%\nprobe: alone\n"
        "\n\nerror: one\r\n\xff",
        error);
    ASSERT_TRUE(sidecar) << error;
    EXPECT_EQ(sidecar->keys,
              (std::map<std::string, std::string, std::less<>>{
                  {"format", "1"}, {"command", "korvel pkg-sup: x"}, {"empty", ""}, {"new-key_2", "value"}}));
    EXPECT_EQ(sidecar->probes, (std::vector<std::pair<std::string, std::string>>{
                                   {"date", "Sun Nov 22"}, {"df", "/tmp: 3%"}, {"alone", ""}}));
    EXPECT_EQ(sidecar->standardError, "\nerror: one\r\n\xff");
    EXPECT_EQ(*sidecar->find("command"), "korvel pkg-sup: x");
    EXPECT_EQ(sidecar->find("probe"), nullptr);
    EXPECT_EQ(sidecar->began(), std::nullopt);
}

}  // namespace
}  // namespace ReportTest

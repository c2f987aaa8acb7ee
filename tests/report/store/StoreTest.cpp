#include <atomic>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>
#include <thread>
#include <variant>

#include <gtest/gtest.h>

#include "Schema.hpp"
#include "Store.hpp"
#include "StoreFixture.hpp"

namespace {

using Report::Store;
using ReportTest::packageOf;
using ReportTest::valueOf;

class StoreTest : public ReportTest::StoreFixture {
protected:
    /// What opening the store refuses.
    std::string refusal() const {
        return refusalOf([this] { const Store store(storePath()); });
    }
};

TEST_F(StoreTest, HoldsAPackageWithItsPartsValuesAndFindings) {
    Report::Package package = packageOf("bts-17", "abc");
    Report::Part& dump = package.parts.emplace_back();
    dump.name = "mmi/sfn/HeapStats";
    dump.expected = true;
    dump.size = 99;
    dump.time = package.time;
    Report::Part& missing = package.parts.emplace_back();
    missing.name = "ti/netfp_proxy";
    missing.expected = true;
    missing.state = Report::State::missing;
    missing.cause = "the process was not running";
    missing.certainty = Report::Certainty::likely;
    package.values = {valueOf("bytes free", 11'872'256)};
    Report::Finding& finding = package.findings.emplace_back();
    finding.rule = "nearly-used-up";
    finding.severity = Report::Severity::warning;
    finding.part = "mmi/sfn/HeapStats";
    finding.meaning = "A heap is nearly used up.";
    finding.count = 2;
    add({package});

    EXPECT_EQ(rows("SELECT * FROM package"),
              "1|abc|bts-17|1795000000|0|pkg-trs|whole|null|null|bts-17.tgz|4711\n");
    EXPECT_EQ(rows("SELECT * FROM part"),
              "1|1|mmi/sfn/HeapStats|1|present|null|null|99|1795000000\n"
              "1|2|ti/netfp_proxy|1|missing|the process was not running|likely|0|null\n");
    EXPECT_EQ(rows("SELECT series.*, value FROM value JOIN series ON id = series"),
              "1|bts-17|mmi/sfn/HeapStats|heap|bytes free|1|11872256\n");
    EXPECT_EQ(rows("SELECT * FROM finding"),
              "1|1|nearly-used-up|warning|mmi/sfn/HeapStats|A heap is nearly used up.|2\n");
}

TEST_F(StoreTest, HoldsWhyAPackageIsDamagedAndWhichReleaseMadeIt) {
    Report::Package package = packageOf("bts-17", "abc");
    package.verdict = Report::Verdict::cut;
    package.cause = "packing was interrupted";
    package.clockUnset = true;
    package.sidecar.emplace().keys["korvel"] = "1.2.3";
    add({package});

    EXPECT_EQ(rows("SELECT clock_unset, verdict, cause, release FROM package"),
              "1|cut|packing was interrupted|1.2.3\n");
}

TEST_F(StoreTest, AddsAPackageOnlyOnce) {
    add({packageOf("bts-17", "abc")});
    Store store(storePath());
    EXPECT_FALSE(store.add(packageOf("another-name", "abc")));
    EXPECT_TRUE(store.add(packageOf("bts-17", "def")));
    EXPECT_FALSE(store.add(packageOf("bts-17", "def")));
    store.commit();

    EXPECT_EQ(rows("SELECT board, sha256 FROM package"), "bts-17|abc\nbts-17|def\n");
}

TEST_F(StoreTest, TellsTheChecksumsOfItsPackages) {
    const std::string first(64, '1');
    const std::string second = std::string(63, '0') + "f";
    add({packageOf("bts-17", first), packageOf("bts-18", second), packageOf("bts-19", "none of SHA-256")});

    const Report::Checksums checksums = Store(storePath()).checksums();
    EXPECT_TRUE(checksums.contains(first));
    EXPECT_TRUE(checksums.contains(second));
    EXPECT_FALSE(checksums.contains(std::string(64, '0')));
    EXPECT_FALSE(checksums.contains("none of SHA-256"));
}

TEST_F(StoreTest, ContinuesTheSeriesOfABoard) {
    Report::Package first = packageOf("bts-17", "abc");
    first.values = {valueOf("a", 1), valueOf("b", 2)};
    Report::Package second = packageOf("bts-17", "def");
    second.values = {valueOf("b", 3), valueOf("c", 4)};
    Report::Package other = packageOf("bts-18", "123");
    other.values = {valueOf("a", 5)};
    add({first});
    add({second, other});

    EXPECT_EQ(
        rows("SELECT id, board, name, group_concat(value) FROM series JOIN value ON id = series GROUP BY id"),
        "1|bts-17|a|1\n2|bts-17|b|2,3\n3|bts-17|c|4\n4|bts-18|a|5\n");
}

TEST_F(StoreTest, ContinuesTheSeriesAlsoIfTheValuesStandInAnotherOrder) {
    Report::Package first = packageOf("bts-17", "abc");
    first.values = {valueOf("a", 1), valueOf("b", 2), valueOf("c", 3)};
    Report::Package second = packageOf("bts-17", "def");
    second.values = {valueOf("c", 4), valueOf("d", 5), valueOf("a", 6), valueOf("b", 7)};
    add({first, second});

    EXPECT_EQ(rows("SELECT name, occurrence, group_concat(value, ' ') FROM series JOIN value ON series = id "
                   "GROUP BY id ORDER BY id"),
              "a|1|1 6\nb|1|2 7\nc|1|3 4\nd|1|5\n");
}

TEST_F(StoreTest, NeverJoinsPackagesOfUnknownBoards) {
    Report::Package one = packageOf("", "abc");
    one.board.reset();
    one.values = {valueOf("a", 1)};
    Report::Package other = one;
    other.sha256 = "def";
    add({one, other});

    EXPECT_EQ(rows("SELECT board FROM package"), "null\nnull\n");
    EXPECT_EQ(rows("SELECT board, name FROM series"), "abc|a\ndef|a\n");
}

TEST_F(StoreTest, KeepsNumbersExactly) {
    constexpr std::uint64_t largest = std::numeric_limits<std::uint64_t>::max();
    Report::Package package = packageOf("bts-17", "abc");
    package.values = {valueOf("signed", std::int64_t{-5}, "-5"), valueOf("fits", std::uint64_t{7}, "0x7"),
                      valueOf("unsigned", largest, "18446744073709551615"), valueOf("decimal", 0.25, "0.25"),
                      valueOf("beyond", std::monostate(), "99999999999999999999")};
    add({package});

    EXPECT_EQ(rows("SELECT name, typeof(value), value FROM value JOIN series ON id = series"),
              "signed|integer|-5\nfits|integer|7\nunsigned|text|18446744073709551615\n"
              "decimal|real|0.25\nbeyond|text|99999999999999999999\n");
}

TEST_F(StoreTest, KeepsValuesApartWhoseNamesAreEqualAsUtf8) {
    Report::Package package = packageOf("bts-17", "abc");
    package.values = {valueOf("x\xFF", 1), valueOf("x\xFE", 2)};
    add({package});

    EXPECT_EQ(rows("SELECT name, occurrence, value FROM value JOIN series ON id = series"),
              "x\uFFFD|1|1\nx\uFFFD|2|2\n");
}

TEST_F(StoreTest, DropsWhatWasNotCommitted) {
    {
        Store store(storePath());
        EXPECT_TRUE(store.add(packageOf("bts-17", "abc")));
        store.commit();
        EXPECT_TRUE(store.add(packageOf("bts-17", "def")));
    }
    EXPECT_EQ(rows("SELECT sha256 FROM package"), "abc\n");
}

TEST_F(StoreTest, LetsAnotherAddPackagesBetweenTwoCommits) {
    Store store(storePath());
    store.add(packageOf("bts-17", "first"));
    std::atomic<bool> added = false;
    const std::jthread other([&] {
        Store another(storePath());
        another.add(packageOf("bts-18", "other"));
        another.commit();
        added = true;
    });
    for (int number = 0; !added; ++number) {
        store.add(packageOf("bts-17", std::to_string(number)));
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        store.commit();
    }
    EXPECT_EQ(rows("SELECT count(*) FROM package WHERE board = 'bts-18'"), "1\n");
}

TEST_F(StoreTest, RefusesWhatIsNoStore) {
    execute("CREATE TABLE notes (text)");
    EXPECT_EQ(refusal(), "STORE: not a store of korvel-report");
    std::ofstream(storePath())
        << "This is a text file, and longer than the header of a database is: 100 bytes."
           "It begins with no signature.";
    EXPECT_EQ(refusal(), "STORE: not a store of korvel-report");
    std::filesystem::remove(storePath());
    std::filesystem::create_directory(storePath());
    EXPECT_EQ(refusal(), "STORE: Is a directory");
}

TEST_F(StoreTest, RefusesAStoreWithoutAVersion) {
    add({});
    execute("PRAGMA user_version = 0");
    EXPECT_EQ(refusal(), "STORE: not a store of korvel-report");
}

TEST_F(StoreTest, RefusesAStoreOfANewerVersion) {
    add({});
    execute("PRAGMA user_version = " + std::to_string(Report::schemaVersion + 1));
    EXPECT_EQ(refusal(), "STORE: version 2 of the store is not known here; a newer korvel-report made it");
}

}  // namespace

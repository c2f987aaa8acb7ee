#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>

#include <gtest/gtest.h>

#include "Schema.hpp"
#include "StoreFixture.hpp"
#include "Tables.hpp"

namespace {

using Report::Tables;
using ReportTest::packageOf;
using ReportTest::valueOf;

class TablesTest : public ReportTest::StoreFixture {
protected:
    static std::string csvOf(Tables& tables, const std::string& table) {
        std::ostringstream out;
        tables.write(table, out);
        return out.str();
    }

    std::string csv(const std::string& table) const {
        Tables tables(storePath());
        return csvOf(tables, table);
    }

    /// What opening the tables refuses.
    std::string refusal() const {
        return refusalOf([this] { const Tables tables(storePath()); });
    }
};

TEST_F(TablesTest, WritesNamesOfColumnsAndARowForEachPackage) {
    Report::Package other = packageOf("bts-18", "def");
    other.verdict = Report::Verdict::cut;
    other.cause = "packing was interrupted";
    other.time.reset();
    add({packageOf("bts, 17", "abc"), other});

    EXPECT_EQ(csv("package"),
              "id,sha256,board,time,clock_unset,kind,verdict,cause,release,source,size\r\n"
              "1,abc,\"bts, 17\",1795000000,0,pkg-trs,whole,,,\"bts, 17.tgz\",4711\r\n"
              "2,def,bts-18,,0,pkg-trs,cut,packing was interrupted,,bts-18.tgz,4711\r\n");
}

TEST_F(TablesTest, WritesEachTableOfAStore) {
    add({});
    EXPECT_EQ(csv("part"), "package,number,name,expected,state,cause,certainty,size,time\r\n");
    EXPECT_EQ(csv("series"), "id,board,part,title,name,occurrence\r\n");
    EXPECT_EQ(csv("value"), "package,series,value\r\n");
    EXPECT_EQ(csv("finding"), "package,number,rule,severity,part,meaning,count\r\n");
    std::string names;
    for (const char* const table : Report::storeTables) {
        names += std::string(table) + "\n";
    }
    EXPECT_EQ(names, rows("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid"));
}

TEST_F(TablesTest, WritesRowsInTheOrderOfTheirKeys) {
    Report::Package first = packageOf("bts-17", "abc");
    first.values = {valueOf("b", 1), valueOf("a", 2)};
    Report::Package second = packageOf("bts-17", "def");
    second.values = {valueOf("a", 3), valueOf("b", 4)};
    add({first, second});

    EXPECT_EQ(csv("value"), "package,series,value\r\n1,1,1\r\n1,2,2\r\n2,1,4\r\n2,2,3\r\n");
}

TEST_F(TablesTest, WritesNumbersExactly) {
    constexpr std::int64_t lowest = std::numeric_limits<std::int64_t>::min();
    Report::Package package = packageOf("bts-17", "abc");
    package.values = {valueOf("integer", lowest), valueOf("decimal", 0.1 + 0.2, ""), valueOf("even", 2.0, ""),
                      valueOf("large", std::numeric_limits<std::uint64_t>::max(), "18446744073709551615")};
    add({package});

    EXPECT_EQ(csv("value"),
              "package,series,value\r\n1,1,-9223372036854775808\r\n1,2,0.30000000000000004\r\n"
              "1,3,2.0\r\n1,4,18446744073709551615\r\n");
}

TEST_F(TablesTest, CountsTheRows) {
    add({packageOf("bts-17", "abc"), packageOf("bts-18", "def")});
    Tables tables(storePath());
    std::ostringstream out;
    EXPECT_EQ(tables.write("package", out), 2U);
    EXPECT_EQ(tables.write("value", out), 0U);
}

TEST_F(TablesTest, RefusesAStoreThatIsNotThereAndMakesNone) {
    EXPECT_EQ(refusal(), "STORE: No such file or directory");
    EXPECT_FALSE(std::filesystem::exists(storePath()));
}

TEST_F(TablesTest, RefusesWhatIsNoStore) {
    std::ofstream(storePath()) << "";
    EXPECT_EQ(refusal(), "STORE: not a store of korvel-report");
    execute("CREATE TABLE package (text)");
    EXPECT_EQ(refusal(), "STORE: not a store of korvel-report");
    std::ofstream(storePath()) << std::string(200, 'x');
    EXPECT_EQ(refusal(), "STORE: not a store of korvel-report");
}

TEST_F(TablesTest, RefusesAStoreOfANewerVersion) {
    add({});
    execute("PRAGMA user_version = " + std::to_string(Report::schemaVersion + 1));
    EXPECT_EQ(refusal(), "STORE: version 2 of the store is not known here; a newer korvel-report made it");
}

}  // namespace

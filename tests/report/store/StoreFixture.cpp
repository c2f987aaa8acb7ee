#include "StoreFixture.hpp"

#include <chrono>
#include <cstdlib>
#include <stdexcept>
#include <system_error>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include "Store.hpp"

namespace ReportTest {

namespace {

std::filesystem::path makeFolder() {
    std::string name = std::filesystem::temp_directory_path() / "korvel-store.XXXXXX";
    if (::mkdtemp(name.data()) == nullptr) {
        throw std::filesystem::filesystem_error("mkdtemp", name, std::make_error_code(std::errc::io_error));
    }
    return name;
}

}  // namespace

Report::Value valueOf(const std::string& name, Report::Number number, const std::string& text) {
    return {.part = "mmi/sfn/HeapStats",
            .title = "heap",
            .name = name,
            .occurrence = 1,
            .number = number,
            .text = text};
}

Report::Value valueOf(const std::string& name, std::int64_t number) {
    return valueOf(name, number, std::to_string(number));
}

Report::Package packageOf(const std::string& board, const std::string& sha256) {
    Report::Package package;
    package.source = board + ".tgz";
    package.sha256 = sha256;
    package.size = 4711;
    package.board = board;
    package.time = Report::Time(std::chrono::seconds(1'795'000'000));
    package.kind = Report::Kind::trs;
    package.verdict = Report::Verdict::whole;
    return package;
}

StoreFixture::StoreFixture() : folder(makeFolder()), path(folder / "site.db") {
}

StoreFixture::~StoreFixture() {
    std::filesystem::remove_all(folder);
}

void StoreFixture::add(const std::vector<Report::Package>& packages) const {
    Report::Store store(path);
    for (const Report::Package& package : packages) {
        EXPECT_TRUE(store.add(package));
    }
    store.commit();
}

std::string StoreFixture::rows(const std::string& query) const {
    SQLite::Database database(path);
    SQLite::Statement statement(database, query);
    std::string text;
    while (statement.executeStep()) {
        for (int column = 0; column < statement.getColumnCount(); ++column) {
            const SQLite::Column value = statement.getColumn(column);
            text += (column > 0 ? "|" : "") + (value.isNull() ? "null" : value.getString());
        }
        text += "\n";
    }
    return text;
}

void StoreFixture::execute(const std::string& statement) const {
    SQLite::Database(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE).exec(statement);
}

}  // namespace ReportTest

#include "Store.hpp"

#include <mutex>
#include <optional>
#include <utility>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Transaction.h>

#include "PackageRows.hpp"
#include "Schema.hpp"
#include "StoreError.hpp"

namespace Report {

namespace {

constexpr int patience = 60'000;  // milliseconds

/// SQLite takes an empty name and ":memory:" for a database that vanishes at the end.
std::string fileName(const std::string& path) {
    return path.starts_with('/') ? path : "./" + path;
}

SQLite::Database opened(const std::string& path) {
    SQLite::Database database(
        fileName(path), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE | SQLite::OPEN_FULLMUTEX, patience);
    prepareTables(database, path);
    return database;
}

}  // namespace

/// The database, and the transaction that is open since the first package after a commit.
class Store::Rows {
public:
    explicit Rows(const std::string& path) : database(opened(path)), packages(database) {}

    bool contains(const std::string& sha256) {
        const std::scoped_lock lock(asking);
        return packages.contains(sha256);
    }

    bool add(const Package& package) {
        if (!transaction) {
            transaction.emplace(database, SQLite::TransactionBehavior::IMMEDIATE);
        }
        return packages.add(package);
    }

    void commit() {
        if (transaction) {
            transaction->commit();
            transaction.reset();
        }
    }

private:
    SQLite::Database database;
    PackageRows packages;
    std::mutex asking;  // a statement serves one thread; the database itself serves several
    std::optional<SQLite::Transaction> transaction;
};

template <typename Step>
auto Store::guarded(Step step) {
    try {
        return step();
    } catch (const SQLite::Exception& error) {
        throw StoreError(path + ": " + error.what());
    }
}

Store::Store(std::string where) : path(std::move(where)) {
    guarded([this] { rows = std::make_unique<Rows>(path); });
}

Store::~Store() = default;

bool Store::contains(const std::string& sha256) {
    return guarded([&] { return rows->contains(sha256); });
}

bool Store::add(const Package& package) {
    return guarded([&] { return rows->add(package); });
}

void Store::commit() {
    guarded([this] { rows->commit(); });
}

}  // namespace Report

#include "Store.hpp"

#include <chrono>
#include <optional>
#include <thread>
#include <utility>

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include "PackageRows.hpp"
#include "StoreFile.hpp"

namespace Report {

/// The database, and the transaction that is open since the first package after a commit.
class Store::Rows {
public:
    explicit Rows(const std::string& path) : database(openToAdd(path)), packages(database) {}

    Checksums checksums() {
        Checksums found;
        SQLite::Statement rows(
            database, "SELECT sha256 FROM package WHERE verdict <> 'not fully read' ORDER BY sha256");
        while (rows.executeStep()) {
            found.append(rows.getColumn(0).getString());
        }
        return found;
    }

    bool add(const Package& package) {
        if (!transaction) {
            std::this_thread::sleep_until(nextTransaction);
            transaction.emplace(database, SQLite::TransactionBehavior::IMMEDIATE);
        }
        return packages.add(package);
    }

    void commit() {
        if (transaction) {
            transaction->commit();
            transaction.reset();
            nextTransaction = Clock::now() + pause;
        }
    }

private:
    using Clock = std::chrono::steady_clock;

    /// Between two transactions, so that another process that adds packages can begin one.
    static constexpr std::chrono::milliseconds pause{15};

    SQLite::Database database;
    PackageRows packages;
    std::optional<SQLite::Transaction> transaction;
    Clock::time_point nextTransaction;
};

Store::Store(std::string where) : path(std::move(where)) {
    useStore(path, [this] { rows = std::make_unique<Rows>(path); });
}

Store::~Store() = default;

Checksums Store::checksums() {
    return useStore(path, [this] { return rows->checksums(); });
}

bool Store::add(const Package& package) {
    return useStore(path, [&] { return rows->add(package); });
}

void Store::commit() {
    useStore(path, [this] { rows->commit(); });
}

}  // namespace Report

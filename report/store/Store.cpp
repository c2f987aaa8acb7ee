#include "Store.hpp"

#include <mutex>
#include <optional>
#include <utility>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Transaction.h>

#include "PackageRows.hpp"
#include "StoreFile.hpp"

namespace Report {

/// The database, and the transaction that is open since the first package after a commit.
class Store::Rows {
public:
    explicit Rows(const std::string& path) : database(openToAdd(path)), packages(database) {}

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

Store::Store(std::string where) : path(std::move(where)) {
    useStore(path, [this] { rows = std::make_unique<Rows>(path); });
}

Store::~Store() = default;

bool Store::contains(const std::string& sha256) {
    return useStore(path, [&] { return rows->contains(sha256); });
}

bool Store::add(const Package& package) {
    return useStore(path, [&] { return rows->add(package); });
}

void Store::commit() {
    useStore(path, [this] { rows->commit(); });
}

}  // namespace Report

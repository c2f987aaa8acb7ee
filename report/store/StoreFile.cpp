#include "StoreFile.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <string_view>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <sqlite3.h>
#include <unistd.h>

#include "Schema.hpp"

namespace Report {

namespace {

constexpr std::chrono::seconds patience{60};
constexpr std::chrono::milliseconds step{5};  // less than Store pauses between two commits

/// SQLite takes an empty name and ":memory:" for a database that vanishes at the end.
std::string fileName(const std::string& path) {
    return path.starts_with('/') ? path : "./" + path;
}

/// SQLite calls this while another process uses the store. Its own handler looks ten times a second, and so
/// would miss the pauses of a process that adds many packages.
int waitForStore(void* /*unused*/, int attempts) {
    std::this_thread::sleep_for(step);
    return attempts < patience / step ? 1 : 0;
}

SQLite::Database open(const std::string& path, int flags) {
    SQLite::Database database(fileName(path), flags | SQLite::OPEN_NOMUTEX);
    ::sqlite3_busy_handler(database.getHandle(), waitForStore, nullptr);
    return database;
}

struct Meaning {
    int error;
    std::string_view text;
};

// Other errors have texts of SQLite that say what is wrong.
constexpr std::array meanings{
    Meaning{SQLITE_BUSY, "another process has used the store for more than a minute"},
    Meaning{SQLITE_NOTADB, "not a store of korvel-report"},
};

/// Why a file cannot be opened, or made in its directory. SQLite does not tell. 0 if it can be opened.
int whyNotOpened(const std::string& path) {
    const int file = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
    if (file >= 0) {
        ::close(file);
        return 0;
    }
    const int error = errno;
    const std::string directory = std::filesystem::path(fileName(path)).parent_path();
    return error == ENOENT && ::access(directory.c_str(), W_OK) != 0 ? errno : error;
}

}  // namespace

std::string meaningOf(const SQLite::Exception& error, const std::string& path) {
    const auto* const known = std::ranges::find(meanings, error.getErrorCode(), &Meaning::error);
    if (known != meanings.end()) {
        return std::string(known->text);
    }
    const int reason = error.getErrorCode() == SQLITE_CANTOPEN ? whyNotOpened(path) : 0;
    return reason != 0 ? std::generic_category().message(reason) : error.what();
}

SQLite::Database openToAdd(const std::string& path) {
    SQLite::Database database = open(path, SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    prepareTables(database, path);
    return database;
}

SQLite::Database openToRead(const std::string& path) {
    // SQLite undoes unfinished writes only if it may write. It opens a file without write permission all the
    // same.
    SQLite::Database database = open(path, SQLite::OPEN_READWRITE);
    database.exec("PRAGMA query_only = 1");
    checkTables(database, path);
    return database;
}

}  // namespace Report

#pragma once

#include <string>

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>

#include "StoreError.hpp"

namespace Report {

// Each function opens the store at a path. It waits up to a minute for another process that writes to the
// store, and so does each later access. Throws StoreError for what is no store, and SQLite::Exception. The
// database is for use by one thread at a time.

/// Makes a store if there is none.
SQLite::Database openToAdd(const std::string& path);

/// Changes nothing, except that it undoes the unfinished writes of a process that was killed.
SQLite::Database openToRead(const std::string& path);

/// What an error of SQLite means for the user, in a few words. `path` is the store's.
std::string meaningOf(const SQLite::Exception& error, const std::string& path);

/// Runs a step that uses the store at `path`. Throws StoreError for an error of SQLite.
template <typename Step>
auto useStore(const std::string& path, Step step) {
    try {
        return step();
    } catch (const SQLite::Exception& error) {
        throw StoreError(path + ": " + meaningOf(error, path));
    }
}

}  // namespace Report

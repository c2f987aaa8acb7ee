#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "Package.hpp"

namespace Report {

/// The entries of a part that the earlier package does not have.
struct NewEntries {
    const Part* part = nullptr;
    std::vector<bool> isNew = {};  ///< for each entry of the part
    std::size_t count = 0;
};

/// A log with new entries. The pieces of an archive, and the archive's earlier runs, are one log: entries
/// that only moved between them are not new.
struct LogChange {
    std::string log;                     ///< name of the part, or "archive/" and the folder in it
    std::vector<NewEntries> parts = {};  ///< those with new entries
    std::size_t count = 0;               ///< of new entries
    std::size_t gone = 0;                ///< entries that only the earlier package has
};

/// The parts of a package that are logs.
struct Logs {
    const Package* package = nullptr;
    std::vector<const Part*> parts;
};

/// Finds the new entries of each log. A log from which entries only went is not in the result: old entries
/// make room for new ones. Keeps about 24 bytes for each entry of one log at a time.
std::vector<LogChange> compareLogs(const Logs& before, const Logs& after, std::size_t maxLine);

/// Calls `visit` with each new entry of a part, in the order of the part, until it returns false. `package`
/// is the later package.
void forEachNewEntry(const Package& package, const NewEntries& entries, std::size_t maxLine,
                     const std::function<bool(const LogEntry&)>& visit);

}  // namespace Report

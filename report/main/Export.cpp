#include <cerrno>
#include <cstdint>
#include <ostream>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include <sys/stat.h>
#include <unistd.h>

#include "Commands.hpp"
#include "Output.hpp"
#include "Overwriting.hpp"
#include "SafeText.hpp"
#include "Tables.hpp"
#include "Words.hpp"

namespace Report {

namespace {

/// The directory of the result. If it was made here, it is removed again, unless it has contents.
class ResultDirectory {
public:
    /// Throws OutputError.
    explicit ResultDirectory(std::string where) : path(std::move(where)) {
        struct stat existing {};
        made = ::mkdir(path.c_str(), 0777) == 0;
        if (!made && (errno != EEXIST || ::stat(path.c_str(), &existing) != 0)) {
            throw OutputError(path + ": " + std::generic_category().message(errno));
        }
        if (!made && !S_ISDIR(existing.st_mode)) {
            throw OutputError(path + ": " + std::generic_category().message(ENOTDIR));
        }
    }
    ResultDirectory(const ResultDirectory&) = delete;
    ResultDirectory& operator=(const ResultDirectory&) = delete;
    ResultDirectory(ResultDirectory&&) = delete;
    ResultDirectory& operator=(ResultDirectory&&) = delete;
    ~ResultDirectory() {
        if (made) {
            ::rmdir(path.c_str());
        }
    }

private:
    std::string path;
    bool made;
};

/// Writes the tables. Each file takes its name only when all of them are complete. Returns the number of
/// rows.
std::uint64_t writeTables(Tables& tables, const std::string& store, const std::string& directory) {
    std::uint64_t rows = 0;
    std::vector<Output> files;
    for (const char* const table : storeTables) {
        const std::string path = directory + "/" + table + ".csv";
        if (replacesAny(path, {store})) {
            throw OutputError(path + ": this file is the store");
        }
        files.push_back(Output({.file = path}));
        files.back().write([&](std::ostream& out, const TextStyle&) {
            rows += tables.write(table, out);
            out.flush();  // a disk that is full must show before any file takes its name
        });
    }
    for (Output& file : files) {
        file.finish();
    }
    return rows;
}

}  // namespace

int exportTables(const Arguments& arguments) {
    const std::string& directory = arguments.files.front();
    Tables tables(arguments.store);
    const ResultDirectory made(directory);
    const std::uint64_t rows = writeTables(tables, arguments.store, directory);
    Output output({});
    output.write([&](std::ostream& out, const TextStyle&) {
        out << forTerminal(directory) << ": " << counted(storeTables.size(), "table") << ", "
            << counted(rows, "row") << '\n';
    });
    output.finish();
    return 0;
}

}  // namespace Report

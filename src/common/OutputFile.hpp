#pragma once

#include <string>
#include <string_view>

#include "UniqueFd.hpp"

namespace Korvel {

/// A file that is written anew, under the rules of openTrusted(). Its first error sticks: nothing is
/// written behind it.
class OutputFile {
public:
    /// Opens and empties `path`; isOpen() tells whether that worked.
    explicit OutputFile(const std::string& path);

    bool isOpen() const { return static_cast<bool>(file); }

    /// Writes all of `text`, or notes why that failed.
    void write(std::string_view text);

    /// Closes, which is when some file systems tell of a full disk. True when nothing failed so far.
    bool close();

    /// The errno value of the first write that failed; 0 where none did.
    int writeError() const { return error; }

private:
    UniqueFd file;
    int error = 0;
};

/// Writes `text` to `path` in place of what was there. A file that cannot be opened, or a write that fails,
/// is reported on standard error; false then.
bool writeDumpFile(const std::string& path, std::string_view text);

}  // namespace Korvel

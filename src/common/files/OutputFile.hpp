#pragma once

#include <string>
#include <string_view>

#include "FileState.hpp"
#include "UniqueFd.hpp"

namespace Korvel {

/// A file that is written, under the rules of openTrusted(): a file that is not the caller's alone is
/// replaced or, where text is appended, refused. The first error sticks: nothing is written behind it.
class OutputFile {
public:
    enum class Mode {
        truncate,  ///< what was there goes
        append,    ///< what was there stays, and writing goes on behind it
    };

    /// Not open.
    OutputFile() = default;

    /// Opens `path`; isOpen() tells whether that worked, errno why not.
    explicit OutputFile(const std::string& path, Mode mode = Mode::truncate);

    bool isOpen() const { return static_cast<bool>(file); }
    bool hasFailed() const { return !isOpen() || error != 0; }

    /// Hands all of `text` to the system, or notes why that failed. Needs an open file.
    void write(std::string_view text);

    /// Gives the file the times of another. That this fails counts for nothing.
    void setTimes(const FileState& state) const;

    /// Closes, which is when some file systems tell of a full disk. True when nothing failed so far.
    bool close();

    /// The errno value of the first write that failed; 0 where none did.
    int writeError() const { return error; }

private:
    Base::UniqueFd file;
    int error = 0;
};

/// Writes `text` to `path` in place of what was there. A file that cannot be opened, or a write that fails,
/// is reported on standard error; false then.
bool writeDumpFile(const std::string& path, std::string_view text);

}  // namespace Korvel

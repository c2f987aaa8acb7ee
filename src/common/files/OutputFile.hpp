#pragma once

#include <string>
#include <string_view>

#include "FileState.hpp"
#include "UniqueFd.hpp"

namespace Korvel {

/// A file that is written, under the rules of openTrusted(). A shared file (see SharedFile) is replaced or,
/// in append mode, refused. After the first error, nothing more is written.
class OutputFile {
public:
    enum class Mode {
        truncate,  ///< discards the previous contents
        append,    ///< writes after the previous contents
    };

    /// Not open.
    OutputFile() = default;

    /// Opens `path`. If that fails, isOpen() is false and errno is set.
    explicit OutputFile(const std::string& path, Mode mode = Mode::truncate);

    bool isOpen() const { return static_cast<bool>(file); }
    bool hasFailed() const { return !isOpen() || error != 0; }

    /// Writes all of `text`, or stores the error. Requires an open file.
    void write(std::string_view text);

    /// Sets the access and modification times to those of another file. Ignores failures.
    void setTimes(const FileState& state) const;

    /// Closes the file. Some file systems report a full disk only now. Returns true if nothing has failed.
    bool close();

    /// Returns the errno value of the first failed write, or 0.
    int writeError() const { return error; }

private:
    Base::UniqueFd file;
    int error = 0;
};

/// Writes `text` to `path` and replaces the previous contents. If the file cannot be opened or written,
/// reports that on standard error and returns false.
bool writeDumpFile(const std::string& path, std::string_view text);

}  // namespace Korvel

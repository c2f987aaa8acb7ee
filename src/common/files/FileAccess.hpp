#pragma once

#include <optional>
#include <string>

#include "BoundedText.hpp"
#include "FileState.hpp"

namespace Korvel {

// Access to files that another process provides. If a file system does not answer, each file costs five
// seconds and the error "Error while reading PATH: Connection timed out".

/// Returns true if this process has access `mode` to the file; `mode` is as for access(). Reports an error
/// that does not tell whether the file is there, such as EIO.
bool isAccessible(const std::string& path, int mode);

/// Returns the file's state, or nothing, with errno set, if there is none. Reports errors as isAccessible().
std::optional<FileState> stateOf(const std::string& path);

/// How a file is read.
struct ReadingRules {
    std::size_t sizeLimit = noSizeLimit;        ///< bytes; the rest is not read
    std::optional<uid_t> owner = std::nullopt;  ///< see InputFile
};

/// The result of reading a file.
struct FileReading {
    bool opened = false;
    int error = 0;         ///< errno value, or 0
    bool cut = false;      ///< the file is larger than the limit
    FileState state = {};  ///< of the opened file

    bool isWhole() const { return opened && error == 0 && !cut; }
};

/// Reads a regular file into `text`. If the file cannot be opened, leaves `text` unchanged. After a read
/// error, `text` contains the part before it. Reports nothing.
FileReading readFile(const std::string& path, std::string& text, const ReadingRules& rules = {});

/// Reports a failed or cut reading on standard error.
void reportReading(const std::string& path, const FileReading& reading, const ReadingRules& rules = {});

/// Ends the helper process, for a run that will access no files for a long time.
void dismissFileHelper();

}  // namespace Korvel

#pragma once

#include <optional>
#include <string>

#include "BoundedText.hpp"
#include "FileState.hpp"

namespace Korvel {

// Looks at files that another process provides. A file system that does not answer costs five seconds a file,
// and is reported as "Error while reading PATH: Connection timed out".

/// Whether this process may use the file in the way of `mode`, as access() takes it.
bool isAccessible(const std::string& path, int mode);

/// What is known of the file; none with errno set where there is none.
std::optional<FileState> stateOf(const std::string& path);

/// How a file is read.
struct ReadingRules {
    std::size_t sizeLimit = noSizeLimit;        ///< bytes; what is behind is left out
    std::optional<uid_t> owner = std::nullopt;  ///< see InputFile
};

/// How reading a file went.
struct FileReading {
    bool opened = false;
    int error = 0;         ///< errno of what failed; 0 where nothing did
    bool cut = false;      ///< the file is larger than the limit
    FileState state = {};  ///< of the file that was opened

    bool isWhole() const { return opened && error == 0 && !cut; }
};

/// Reads a regular file into `text`, which stays as it is where the file cannot be opened. Where reading
/// breaks off, `text` is what came before. Reports nothing.
FileReading readFile(const std::string& path, std::string& text, const ReadingRules& rules = {});

/// Reports on standard error what went wrong, if anything did.
void reportReading(const std::string& path, const FileReading& reading, const ReadingRules& rules = {});

/// Ends the process that looks at files, for a run that goes on for long without looking at any.
void dismissFileHelper();

}  // namespace Korvel

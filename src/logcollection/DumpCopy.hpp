#pragma once

#include <optional>
#include <string>

#include "FileAccess.hpp"

namespace Korvel {

/// Copies a file while another process is writing it. Remembers failures, so that they are reported once
/// after the last attempt.
class DumpCopy {
public:
    enum class Directory {
        required,      ///< the destination directory must exist
        mayBeMissing,  ///< if it is missing, nothing is read, copied or reported
    };

    /// Records the present state of the source. `readingRules` apply to reading it.
    DumpCopy(std::string sourcePath, std::string destinationPath, const ReadingRules& readingRules = {},
             Directory directoryState = Directory::required);

    /// Returns true if the source exists and has changed since construction.
    bool hasSourceChanged();

    /// Returns false after a file system has timed out.
    bool sourceResponds() const { return responds; }

    /// Returns true if the source was opened at least once.
    bool wasTaken() const { return taken; }

    /// Copies the present contents of the source to the destination and to `text`. If there is no source,
    /// leaves `text` unchanged. If the source is unchanged since construction, the copy gets its times.
    /// Returns false if the copy is incomplete; `text` then contains what could be read.
    bool take(std::string& text);

    /// Reports the failure that prevented the copy, or that the copy was cut. Returns true if the source
    /// contains nothing that the copy lacks.
    [[nodiscard]] bool reportResult() const;

private:
    /// Returns 0, or the errno value of the failure.
    int write(const std::string& text, const FileState& state) const;

    const std::string source;
    const std::string destination;
    const ReadingRules rules;
    const Directory directory;
    const std::optional<FileState> before;  // empty if there was no source
    bool responds;
    bool taken = false;
    FileReading reading;  // of the latest attempt that found a source
    int writeError = 0;   // of its copy
};

}  // namespace Korvel

#pragma once

#include <optional>
#include <string>

#include "FileAccess.hpp"

namespace Korvel {

/// The copy of a file that another process writes at its own pace. Remembers what went wrong, so that it can
/// be reported once when all tries are over.
class DumpCopy {
public:
    enum class Directory {
        expected,  ///< of the destination: must be there
        removed,   ///< may be missing: then nothing is copied, nothing read, and nothing is wrong
    };

    /// Looks at the source as it is now. It is read under `readingRules`.
    DumpCopy(std::string sourcePath, std::string destinationPath, const ReadingRules& readingRules = {},
             Directory directoryState = Directory::expected);

    /// Whether the source is there and is not what it was when this object was made.
    bool hasSourceChanged();

    /// False once a file system has let its time pass.
    bool sourceAnswers() const { return answers; }

    /// Whether the source could be read at least once.
    bool wasTaken() const { return taken; }

    /// Copies the source as far as it has been written, and writes it to `text` too, which stays as it is
    /// where there is no source. A source that is what it was when this object was made leaves its times to
    /// the copy. False where no whole copy was made; `text` then has what could be read all the same.
    bool take(std::string& text);

    /// Reports what has kept the source from being copied, or that the copy is cut. True where the source
    /// holds nothing that the copy does not.
    [[nodiscard]] bool settle() const;

private:
    /// 0, or errno of what failed.
    int write(const std::string& text, const FileState& state) const;

    const std::string source;
    const std::string destination;
    const ReadingRules rules;
    const Directory directory;
    const std::optional<FileState> before;  // none where there was no source
    bool answers;
    bool taken = false;
    FileReading reading;  // the last one that found a source
    int writeError = 0;   // of its copy
};

}  // namespace Korvel

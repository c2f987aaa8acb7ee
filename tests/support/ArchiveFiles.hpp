#pragma once

#include <string>

/// What the archive of one log holds.
class ArchiveFiles {
public:
    /// `shortName` is the folder's name.
    explicit ArchiveFiles(const std::string& shortName);

    /// The texts of the compressed files. Empty if a file is missing or incomplete.
    std::string startup() const;
    std::string middle() const;

    /// The text of runtime.log. Empty if the file is missing.
    std::string runtime() const;

    /// All three, in the order of their creation.
    std::string all() const { return startup() + middle() + runtime(); }

    const std::string directory;
    const std::string runtimePath;
    const std::string startupPath;  ///< path before compression
    const std::string middlePath;
};

#pragma once

#include <string>

/// What the archive of one log holds.
class ArchiveFiles {
public:
    /// `shortName` is the folder's name.
    explicit ArchiveFiles(const std::string& shortName);

    /// The texts of the compressed files. Empty where there is none, or where it is not whole.
    std::string startup() const;
    std::string middle() const;

    /// The text of runtime.log; empty where there is none.
    std::string runtime() const;

    /// All three, in the order of their making.
    std::string all() const { return startup() + middle() + runtime(); }

    const std::string directory;
    const std::string runtimePath;
    const std::string startupPath;  ///< as it is before compression
    const std::string middlePath;
};

#pragma once

#include <filesystem>
#include <map>

/// The simulated board that this process runs on, as it is now, for the tests that follow each other on it.
/// From here on the orphans of this process's children become its children.
class FreshBoard {
public:
    FreshBoard();

    /// True on a simulated board. Nothing here touches any other machine.
    static bool isAtHand();

    /// Kills all child processes, removes each file that was not there at construction, and makes each folder
    /// again that was. The content of files that were there stays as it is.
    void restore() const;

private:
    void layOutFolders() const;
    void removeOtherFiles() const;

    std::map<std::filesystem::path, std::filesystem::file_status> files;
};

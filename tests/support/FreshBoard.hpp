#pragma once

#include <filesystem>
#include <map>

/// The current state of the simulated board on which this process runs. It can be restored for the next test.
/// Orphans of this process's children become its own children.
class FreshBoard {
public:
    FreshBoard();

    /// True on a simulated board. This class never changes another machine.
    static bool isAtHand();

    /// Kills all child processes. Removes each file, and recreates each folder, that differs from the time of
    /// construction. The content of files that existed then is not restored.
    void restore() const;

private:
    void layOutFolders() const;
    void removeOtherFiles() const;

    std::map<std::filesystem::path, std::filesystem::file_status> files;
};

#pragma once

#include <sys/stat.h>

namespace Korvel {

/// The metadata of a file. Two states are equal if they are of the same file and it was not written to in
/// between.
struct FileState {
    dev_t device = 0;
    ino_t inode = 0;
    mode_t mode = 0;
    uid_t owner = 0;
    off_t size = 0;  ///< bytes
    timespec accessed{};
    timespec modified{};
    timespec changed{};

    FileState() = default;
    explicit FileState(const struct stat& status)
        : device(status.st_dev),
          inode(status.st_ino),
          mode(status.st_mode),
          owner(status.st_uid),
          size(status.st_size),
          accessed(status.st_atim),
          modified(status.st_mtim),
          changed(status.st_ctim) {}

    bool isDirectory() const { return S_ISDIR(mode); }
};

inline bool operator==(const timespec& left, const timespec& right) {
    return left.tv_sec == right.tv_sec && left.tv_nsec == right.tv_nsec;
}

inline bool operator==(const FileState& left, const FileState& right) {
    return left.device == right.device && left.inode == right.inode && left.size == right.size &&
           left.modified == right.modified && left.changed == right.changed;
}

}  // namespace Korvel

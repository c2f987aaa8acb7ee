#include "FullDisk.hpp"

#include <stdexcept>

#include <fcntl.h>
#include <sys/statvfs.h>
#include <unistd.h>

FullDisk::FullDisk(const std::string& directory) : filler(directory + "/filler") {
    constexpr mode_t mode = 0600;
    const int file = ::open(filler.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    struct statvfs disk {};
    const bool full = file >= 0 && ::fstatvfs(file, &disk) == 0 &&
                      ::posix_fallocate(file, 0, static_cast<off_t>(disk.f_bfree * disk.f_bsize)) == 0;
    ::close(file);
    if (!full) {
        throw std::runtime_error("cannot fill " + directory);
    }
}

FullDisk::~FullDisk() {
    ::unlink(filler.c_str());
}

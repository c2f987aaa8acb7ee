#include "SharedMemory.hpp"

#include <cerrno>
#include <limits>
#include <string>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>

#include "SystemCall.hpp"

namespace HostBoard {

static_assert(sizeof(off_t) == sizeof(std::uint64_t), "the DDR window is longer than 32-bit offsets reach");

SharedMemory::SharedMemory(const char* name)
    : fd(Base::uninterrupted([&] { return ::shm_open(name, O_RDWR | O_CREAT, S_IRUSR | S_IWUSR); })) {
}

std::optional<SharedMemory::Extent> SharedMemory::extent() const {
    constexpr std::uint64_t blockSize = 512;  // unit of st_blocks on every file system
    struct stat status {};
    if (::fstat(fd.get(), &status) != 0) {
        return std::nullopt;
    }
    return Extent{.length = static_cast<std::uint64_t>(status.st_size),
                  .allocated = static_cast<std::uint64_t>(status.st_blocks) * blockSize};
}

bool SharedMemory::grow(std::uint64_t length) {
    const std::optional<Extent> now = extent();
    const auto extend = [&] { return ::ftruncate(fd.get(), static_cast<off_t>(length)); };
    return now && (now->length >= length || Base::uninterrupted(extend) == 0);
}

bool SharedMemory::reserve(std::uint64_t offset, std::uint64_t length) {
    int error = EINTR;
    while (error == EINTR) {
        error = ::posix_fallocate(fd.get(), static_cast<off_t>(offset), static_cast<off_t>(length));
    }
    if (error != 0) {
        errno = error;
    }
    return error == 0;
}

Mapping SharedMemory::map(std::uint64_t offset, std::uint64_t length) const {
    if (length > std::numeric_limits<std::size_t>::max()) {
        errno = ENOMEM;
        return {};
    }
    const auto size = static_cast<std::size_t>(length);
    void* const address =
        ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, fd.get(), static_cast<off_t>(offset));
    return address == MAP_FAILED ? Mapping{} : Mapping{address, size};
}

bool SharedMemory::reopen() {
    // Reopens by descriptor, because the name may now refer to another object.
    const std::string self = "/proc/self/fd/" + std::to_string(fd.get());
    fd = Base::UniqueFd(Base::uninterrupted([&] { return ::open(self.c_str(), O_RDWR | O_CLOEXEC); }));
    return static_cast<bool>(fd);
}

}  // namespace HostBoard

#pragma once

#include <cstdint>
#include <optional>

#include "Mapping.hpp"
#include "UniqueFd.hpp"

namespace HostBoard {

/// A POSIX shared memory object: its descriptor, its size and its mappings into this process. Operations that
/// fail return false or an empty value and set errno. Does not interpret the contents.
class SharedMemory {
public:
    /// Sizes in bytes.
    struct Extent {
        std::uint64_t length;
        std::uint64_t allocated;  ///< the rest is holes
    };

    /// No object: every operation fails.
    SharedMemory() = default;
    /// Opens the object `name` ("/" and a file name in /dev/shm). Creates it if it is missing, accessible
    /// only to this user. Converts to false if that fails.
    explicit SharedMemory(const char* name);

    explicit operator bool() const { return static_cast<bool>(fd); }
    int descriptor() const { return fd.get(); }

    std::optional<Extent> extent() const;

    /// Extends the object to at least `length` bytes; the added part is a hole.
    bool grow(std::uint64_t length);

    /// Allocates memory for `length` bytes from `offset`, and extends the object if necessary. Without it,
    /// access to a hole raises SIGBUS if /dev/shm is full.
    bool reserve(std::uint64_t offset, std::uint64_t length);

    /// Maps `length` bytes from `offset`, a multiple of the page size, for reading and writing. The range may
    /// extend beyond the end of the object; do not access that part before the object has grown. Returns an
    /// empty mapping on failure.
    Mapping map(std::uint64_t offset, std::uint64_t length) const;

    /// Replaces the open file description, which mappings and forked processes share, with a new unshared
    /// one. Returns false, and leaves no object open, on failure.
    bool reopen();

private:
    Base::UniqueFd fd;
};

}  // namespace HostBoard

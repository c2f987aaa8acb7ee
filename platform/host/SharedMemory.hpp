#pragma once

#include <cstdint>
#include <optional>

#include "Mapping.hpp"
#include "UniqueFd.hpp"

namespace HostBoard {

/// A POSIX shared memory object: its descriptor, its size and its mappings into this process.
/// Operations that fail say so by their result and leave the reason in errno. Does not know what the
/// memory holds.
class SharedMemory {
public:
    /// Sizes in bytes.
    struct Extent {
        std::uint64_t length;
        std::uint64_t backed;  ///< how much of it has memory behind it; the rest is holes
    };

    /// No object: every operation fails.
    SharedMemory() = default;
    /// Opens the object `name` ("/" and a file name below /dev/shm), for this user alone where it has to
    /// be created. Converts to false where that failed.
    explicit SharedMemory(const char* name);

    explicit operator bool() const { return static_cast<bool>(fd); }
    int descriptor() const { return fd.get(); }

    std::optional<Extent> extent() const;

    /// Makes the object at least `length` bytes long, with a hole for what is new.
    bool grow(std::uint64_t length);

    /// Puts memory behind the holes in `length` bytes from `offset` on, lengthening the object where it
    /// ends before. Touching a hole instead ends the process (SIGBUS) when /dev/shm is full.
    bool reserve(std::uint64_t offset, std::uint64_t length);

    /// Maps `length` bytes from `offset`, a multiple of the page size, for reading and writing. They may
    /// lie behind the end of the object, and must then not be touched before it has grown. Empty where
    /// that failed.
    Mapping map(std::uint64_t offset, std::uint64_t length) const;

    /// Replaces the open file behind the descriptor, which mappings and forked processes share and keep
    /// open, by one that nobody shares yet. False, and no object any more, where that fails.
    bool reopen();

private:
    Base::UniqueFd fd;
};

}  // namespace HostBoard

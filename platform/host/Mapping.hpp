#pragma once

#include <cstddef>
#include <span>

namespace HostBoard {

/// Owns one memory mapping of the process and unmaps it on destruction. Empty by default.
class Mapping {
public:
    Mapping() = default;
    /// Takes ownership of `length` bytes at `address`, mapped by mmap().
    Mapping(void* address, std::size_t length);
    Mapping(Mapping&& other) noexcept;
    Mapping& operator=(Mapping&& other) noexcept;
    Mapping(const Mapping&) = delete;
    Mapping& operator=(const Mapping&) = delete;
    ~Mapping();

    std::span<std::byte> bytes() const { return mapped; }
    explicit operator bool() const { return !mapped.empty(); }

private:
    std::span<std::byte> mapped;
};

}  // namespace HostBoard

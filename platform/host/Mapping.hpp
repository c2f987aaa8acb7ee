#pragma once

#include <cstddef>
#include <span>

namespace HostBoard {

/// Owns one mapping of memory into the process and unmaps it when it goes. Empty by default.
class Mapping {
public:
    Mapping() = default;
    /// Takes over `length` bytes at `address` that mmap() has mapped.
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

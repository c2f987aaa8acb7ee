#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace HostBoard {

/// Owns one file descriptor and closes it exactly once. Leaves errno alone, so that a caller can still
/// report the error that made it give the descriptor up.
class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int descriptor) noexcept : fd(descriptor) {}
    UniqueFd(UniqueFd&& other) noexcept : fd(std::exchange(other.fd, none)) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        std::swap(fd, other.fd);
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;
    ~UniqueFd() {
        if (fd != none) {
            const int reason = errno;
            ::close(fd);
            errno = reason;
        }
    }

    int get() const noexcept { return fd; }
    explicit operator bool() const noexcept { return fd != none; }

private:
    static constexpr int none = -1;
    int fd = none;
};

}  // namespace HostBoard

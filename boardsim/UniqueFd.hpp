#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

/// Owns one file descriptor and closes it exactly once. Leaves errno alone, so that a caller can still
/// report the error that made it give the descriptor up.
class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int descriptor) noexcept : fd(descriptor) {}
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;
    UniqueFd(UniqueFd&& other) noexcept : fd(std::exchange(other.fd, none)) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        reset(std::exchange(other.fd, none));
        return *this;
    }
    ~UniqueFd() { reset(); }

    int get() const noexcept { return fd; }

    void reset(int descriptor = none) noexcept {
        const int old = std::exchange(fd, descriptor);
        if (old == none) {
            return;
        }
        const int reason = errno;
        ::close(old);  // not repeated on EINTR: Linux has freed the number all the same
        errno = reason;
    }

private:
    static constexpr int none = -1;
    int fd = none;
};

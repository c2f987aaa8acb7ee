#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace Base {

/// Owns one file descriptor and closes it exactly once. Leaves errno unchanged, so that a caller can still
/// report the error that made it give the descriptor up.
class UniqueFd {
public:
    UniqueFd() = default;
    explicit UniqueFd(int descriptor) noexcept : fd(descriptor) {}
    UniqueFd(UniqueFd&& other) noexcept : fd(other.release()) {}
    UniqueFd& operator=(UniqueFd&& other) noexcept {
        if (this != &other) {
            reset(other.release());
        }
        return *this;
    }
    UniqueFd(const UniqueFd&) = delete;
    UniqueFd& operator=(const UniqueFd&) = delete;
    ~UniqueFd() { reset(); }

    int get() const noexcept { return fd; }
    explicit operator bool() const noexcept { return fd != none; }

    /// Hands the descriptor over to the caller, who closes it from now on.
    [[nodiscard]] int release() noexcept { return std::exchange(fd, none); }

    void reset(int descriptor = none) noexcept {
        const int reason = errno;
        static_cast<void>(close());
        fd = descriptor;
        errno = reason;
    }

    /// Closes now, for a caller that reports a failed close: false with errno set. The descriptor is given
    /// up in either case. An interrupted close is not repeated and does not count as failed: Linux has freed
    /// the number already.
    [[nodiscard]] bool close() noexcept {
        const int old = release();
        return old == none || ::close(old) == 0 || errno == EINTR;
    }

private:
    static constexpr int none = -1;
    int fd = none;
};

}  // namespace Base

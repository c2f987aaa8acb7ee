#pragma once

#include <cerrno>
#include <utility>

#include <unistd.h>

namespace Base {

/// Owns one file descriptor and closes it exactly once. The destructor, reset() and assignment preserve
/// errno, so that callers can still report an earlier error.
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

    /// Transfers ownership of the descriptor to the caller.
    [[nodiscard]] int release() noexcept { return std::exchange(fd, none); }

    void reset(int descriptor = none) noexcept {
        const int reason = errno;
        static_cast<void>(close());
        fd = descriptor;
        errno = reason;
    }

    /// Closes the descriptor now and gives it up, even if the close fails. Returns false, with errno set, if
    /// the close fails. An interrupted close counts as success and is not repeated, because Linux has already
    /// released the descriptor number.
    [[nodiscard]] bool close() noexcept {
        const int old = release();
        return old == none || ::close(old) == 0 || errno == EINTR;
    }

private:
    static constexpr int none = -1;
    int fd = none;
};

}  // namespace Base

#include "ForkedWork.hpp"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Does not return, so that the child does not run the test program's exit code.
void workAsChild(int result, const std::function<std::string()>& work) noexcept {
    const std::string text = work();
    const bool written = ::write(result, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    ::_exit(written ? EXIT_SUCCESS : EXIT_FAILURE);
}

std::string readToEnd(int descriptor) {
    constexpr std::size_t pieceSize = 4096;
    std::array<char, pieceSize> piece{};
    std::string text;
    for (ssize_t size = 0; (size = ::read(descriptor, piece.data(), piece.size())) > 0;) {
        text.append(piece.data(), static_cast<std::size_t>(size));
    }
    return text;
}

}  // namespace

std::string returnedByChild(const std::function<std::string()>& work) {
    std::array<int, 2> pipe{};
    if (::pipe(pipe.data()) != 0) {
        throw std::system_error(errno, std::generic_category(), "pipe");
    }
    const pid_t child = ::fork();
    if (child == 0) {
        workAsChild(pipe[1], work);
    }
    ::close(pipe[1]);
    std::string text = readToEnd(pipe[0]);
    ::close(pipe[0]);
    if (child == -1 || ::waitpid(child, nullptr, 0) != child) {
        throw std::system_error(errno, std::generic_category(), "fork");
    }
    return text;
}

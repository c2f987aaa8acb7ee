#include "InputFile.hpp"

#include <vector>

#include <fcntl.h>
#include <sys/stat.h>

#include "SystemCall.hpp"

namespace Korvel {

InputFile::InputFile(const std::string& path)
    : file(
          uninterrupted([&] { return ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC); })) {
    struct stat status {};
    if (!file) {
        return;
    }
    if (::fstat(file.get(), &status) != 0) {
        file.reset();
    } else if (!S_ISREG(status.st_mode)) {
        file.reset();
        errno = S_ISDIR(status.st_mode) ? EISDIR : ENXIO;
    }
}

std::optional<std::size_t> InputFile::read(std::span<char> buffer) {
    const ssize_t count = uninterrupted([&] { return ::read(file.get(), buffer.data(), buffer.size()); });
    if (count < 0) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(count);
}

std::optional<std::string> readWholeFile(const std::string& path) {
    constexpr std::size_t pieceSize = 65536;
    InputFile file(path);
    if (!file.isOpen()) {
        return std::nullopt;
    }
    std::string content;
    std::vector<char> piece(pieceSize);
    std::optional<std::size_t> count = file.read(piece);
    while (count && *count > 0) {
        content.append(piece.data(), *count);
        count = file.read(piece);
    }
    errno = count ? 0 : errno;
    return content;
}

}  // namespace Korvel

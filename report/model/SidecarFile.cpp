#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <system_error>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "Sidecar.hpp"
#include "SidecarError.hpp"
#include "SystemCall.hpp"
#include "UniqueFd.hpp"

namespace Report {
namespace {

using Base::checked;
using Base::uninterrupted;

constexpr std::size_t largest = std::size_t{1} << 20;

/// Reads a file up to one byte more than the largest sidecar.
std::string readFile(const std::string& path, bool named) {
    // Without O_NONBLOCK, opening a FIFO beside the package would wait for a writer.
    const int flags = O_RDONLY | O_CLOEXEC | (named ? 0 : O_NONBLOCK);
    const Base::UniqueFd file(checked(uninterrupted([&] { return ::open(path.c_str(), flags); }), "open"));
    struct stat status {};
    checked(::fstat(file.get(), &status), "fstat");
    if (!named && !S_ISREG(status.st_mode)) {
        throw std::system_error(EINVAL, std::generic_category(), "not a regular file");
    }
    std::string text;
    std::array<char, std::size_t{64} << 10> buffer{};
    while (text.size() <= largest) {
        const std::size_t wanted = std::min(buffer.size(), largest + 1 - text.size());
        const ssize_t count =
            checked(uninterrupted([&] { return ::read(file.get(), buffer.data(), wanted); }), "read");
        if (count == 0) {
            break;
        }
        text.append(buffer.data(), static_cast<std::size_t>(count));
    }
    return text;
}

bool sameChecksum(std::string_view written, std::string_view sha256) {
    const auto lower = [](char byte) {
        return byte >= 'A' && byte <= 'F' ? static_cast<char>(byte + 32) : byte;
    };
    return std::ranges::equal(written, sha256, {}, lower);
}

}  // namespace

std::string whyForeign(const Sidecar& sidecar, std::string_view sha256) {
    const std::string* const written = sidecar.find("sha256");
    if (written == nullptr) {
        return "it has no checksum of the package";
    }
    if (sha256.empty()) {
        return "the package's checksum is unknown, because the package was not read to its end";
    }
    return sameChecksum(*written, sha256) ? "" : "its checksum is not the package's";
}

SidecarResult readSidecar(const std::string& path, bool named, std::string_view sha256) {
    SidecarResult result;
    result.state = SidecarState::unreadable;
    try {
        const std::string text = readFile(path, named);
        if (text.size() > largest) {
            result.error = "it is larger than 1 MiB";
            return result;
        }
        result.sidecar = parseSidecar(text, result.error);
    } catch (const std::system_error& error) {
        if (named) {
            throw SidecarError(error.code(), path);
        }
        const bool absent = error.code() == std::errc::no_such_file_or_directory;
        result.state = absent ? SidecarState::absent : SidecarState::unreadable;
        result.error = absent ? "" : error.code().message();
        return result;
    }
    if (!result.sidecar) {
        return result;
    }
    result.error = whyForeign(*result.sidecar, sha256);
    if (!result.error.empty()) {
        result.sidecar.reset();
    }
    result.state = result.sidecar ? SidecarState::used : SidecarState::foreign;
    return result;
}

}  // namespace Report

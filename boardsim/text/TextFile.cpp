#include "TextFile.hpp"

#include <algorithm>
#include <array>
#include <filesystem>
#include <limits>
#include <sstream>
#include <system_error>

#include <fcntl.h>
#include <unistd.h>

#include "SystemCall.hpp"
#include "UniqueFd.hpp"

namespace Boardsim {

void writeTextFile(const std::string& path, std::string_view text) {
    constexpr mode_t mode = 0644;
    const std::string what = "cannot write " + path;
    const Base::UniqueFd file(
        Base::checked(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode), what));
    writeText(file.get(), text, what);
}

void replaceTextFile(const std::string& path, std::string_view text) {
    const std::string successor = path + ".new";
    try {
        writeTextFile(successor, text);
        std::filesystem::rename(successor, path);
    } catch (const std::system_error&) {
        ::unlink(successor.c_str());
        throw;
    }
}

void writeText(int descriptor, std::string_view text, const std::string& what) {
    while (!text.empty()) {
        const auto written = Base::checked(
            Base::uninterrupted([&] { return ::write(descriptor, text.data(), text.size()); }), what);
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::string readBeginning(int descriptor, std::size_t limit) {
    std::string text;
    std::array<char, 65536> piece{};
    while (text.size() < limit) {
        const std::size_t wanted = std::min(piece.size(), limit - text.size());
        const auto count = Base::checked(
            Base::uninterrupted([&] { return ::read(descriptor, piece.data(), wanted); }), "cannot read");
        if (count == 0) {
            break;
        }
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
    return text;
}

std::string readBeginning(const std::string& path, std::size_t limit) {
    const Base::UniqueFd file(
        Base::checked(::open(path.c_str(), O_RDONLY | O_CLOEXEC), "cannot read " + path));
    try {
        return readBeginning(file.get(), limit);
    } catch (const std::system_error& error) {
        throw std::system_error(error.code(), "cannot read " + path);
    }
}

std::string readTextFile(const std::string& path) {
    return readBeginning(path, std::numeric_limits<std::size_t>::max());
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

}  // namespace Boardsim

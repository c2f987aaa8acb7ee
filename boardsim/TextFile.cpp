#include "TextFile.hpp"

#include <array>
#include <sstream>

#include <fcntl.h>
#include <unistd.h>

#include "SystemCall.hpp"
#include "UniqueFd.hpp"

void writeTextFile(const std::string& path, std::string_view text) {
    constexpr mode_t mode = 0644;
    const UniqueFd file(checked(::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, mode),
                                "cannot write " + path));
    while (!text.empty()) {
        const auto written =
            checked(uninterrupted([&] { return ::write(file.get(), text.data(), text.size()); }),
                    "cannot write " + path);
        text.remove_prefix(static_cast<std::size_t>(written));
    }
}

std::string readTextFile(const std::string& path) {
    const UniqueFd file(checked(::open(path.c_str(), O_RDONLY | O_CLOEXEC), "cannot read " + path));
    std::string text;
    std::array<char, 65536> piece{};
    for (;;) {
        const auto count =
            checked(uninterrupted([&] { return ::read(file.get(), piece.data(), piece.size()); }),
                    "cannot read " + path);
        if (count == 0) {
            return text;
        }
        text.append(piece.data(), static_cast<std::size_t>(count));
    }
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

#include "BoardSetting.hpp"

#include <array>
#include <charconv>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

#include "SystemCall.hpp"
#include "UniqueFd.hpp"

namespace HostBoard {
namespace {

/// `text` without a trailing line end.
std::string_view withoutLineEnd(std::string_view text) {
    return text.substr(0, text.size() - (text.ends_with('\n') ? 1 : 0));
}

}  // namespace

int boardSetting(const char* path) {
    const Base::UniqueFd file(
        Base::uninterrupted([&] { return ::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
    std::array<char, 16> content{};  // more than any number and its line end
    const ssize_t length =
        Base::uninterrupted([&] { return ::read(file.get(), content.data(), content.size()); });
    if (length <= 0 || static_cast<std::size_t>(length) == content.size()) {
        return 0;
    }
    const auto text = withoutLineEnd({content.data(), static_cast<std::size_t>(length)});
    const char* const end = text.data() + text.size();
    int number = 0;
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc{} && stop == end ? number : 0;
}

}  // namespace HostBoard

#include "SystemCalls.hpp"

#include <array>
#include <sstream>
#include <string_view>

#include <fcntl.h>

namespace {

struct CallName {
    std::string_view usual;
    std::string_view here;
};

#ifdef __arm__
constexpr std::array callNames{CallName{"recvfrom", "recv"}, CallName{"newfstatat", "statx"},
                               CallName{"ftruncate", "ftruncate64"}};
#else
constexpr std::array<CallName, 0> callNames{};
#endif

std::string_view nameHere(std::string_view usual) {
    for (const CallName& each : callNames) {
        if (each.usual == usual) {
            return each.here;
        }
    }
    return usual;
}

}  // namespace

bool askStatus(const std::string& path, StatusAnswer& answer) {
#ifdef __arm__
    return ::statx(AT_FDCWD, path.c_str(), AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS, &answer) == 0;
#else
    return ::lstat(path.c_str(), &answer) == 0;
#endif
}

std::string forThisProcessor(const std::string& fault) {
    const std::size_t end = fault.find(':');
    std::istringstream names(fault.substr(0, end));
    std::string result;
    for (std::string name; std::getline(names, name, ',');) {
        result.append(result.empty() ? "" : ",").append(nameHere(name));
    }
    return result + (end == std::string::npos ? "" : fault.substr(end));
}

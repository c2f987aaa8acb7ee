#include "ProcessOwner.hpp"

#include <string>

#include "FileAccess.hpp"
#include "TextInput.hpp"

namespace Korvel {

std::optional<uid_t> fileOwnerOf(pid_t process) {
    std::string status;
    if (!readFile("/proc/" + std::to_string(process) + "/status", status).isWhole()) {
        return std::nullopt;
    }
    const std::size_t line = status.find("\nUid:");
    if (line == std::string::npos) {
        return std::nullopt;
    }
    std::istringstream fields = inputFrom(status.substr(line));
    std::string key;
    uid_t real = 0;
    uid_t effective = 0;
    uid_t saved = 0;
    uid_t fileSystem = 0;
    return fields >> key >> real >> effective >> saved >> fileSystem ? std::optional(fileSystem)
                                                                     : std::nullopt;
}

}  // namespace Korvel

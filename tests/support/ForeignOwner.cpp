#include "ForeignOwner.hpp"

#include <cstddef>
#include <filesystem>
#include <iomanip>
#include <span>
#include <sstream>
#include <stdexcept>

#include "SystemCalls.hpp"

namespace {

constexpr uid_t someoneElse = 4711;

/// For a link, only the first call counts. strace treats the target of a link as the same path.
constexpr const char* firstLook = ":when=1";

/// The start of an answer up to its owner (included), in hex.
std::string upToOwner(const StatusAnswer& answer) {
    const auto bytes = std::as_bytes(std::span(&answer, 1));
    const auto owner = std::as_bytes(std::span(&(answer.*ownerInAnswer), 1));
    const auto length = static_cast<std::size_t>(owner.data() + owner.size() - bytes.data());
    std::ostringstream hex;
    hex << std::hex << std::setfill('0');
    for (const std::byte each : bytes.first(length)) {
        hex << std::setw(2) << std::to_integer<unsigned>(each);
    }
    return hex.str();
}

StatusAnswer statusOf(const std::string& path) {
    StatusAnswer answer{};
    if (!askStatus(path, answer)) {
        throw std::runtime_error("nothing at " + path);
    }
    return answer;
}

/// `when` selects calls, in strace's format.
Injection answering(const StatusAnswer& answer, const std::string& path, const std::string& when) {
    return {
        .faults = {"newfstatat:poke_exit=" + std::string(answerArgument) + "=" + upToOwner(answer) + when},
        .path = path};
}

}  // namespace

Injection foreignOwnerOf(const std::string& path) {
    StatusAnswer answer = statusOf(path);
    answer.*ownerInAnswer = someoneElse;
    return answering(answer, path, std::filesystem::is_symlink(path) ? firstLook : "");
}

Injection onlyNameAtFirst(const std::string& path) {
    StatusAnswer answer = statusOf(path);
    answer.*namesInAnswer = 1;
    return answering(answer, path, std::filesystem::is_symlink(path) ? firstLook : ":when=1..2");
}

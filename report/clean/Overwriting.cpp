#include "Overwriting.hpp"

#include <algorithm>
#include <filesystem>
#include <optional>
#include <system_error>

#include <sys/stat.h>
#include <unistd.h>

namespace Report {

namespace {

using Status = struct stat;

std::optional<Status> statusOf(const std::string& path) {
    Status status{};
    const bool known = (path == "-" ? ::fstat(STDIN_FILENO, &status) : ::stat(path.c_str(), &status)) == 0;
    return known ? std::optional(status) : std::nullopt;
}

/// The path without links and dots, as far as its folders exist.
std::filesystem::path canonical(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::weakly_canonical(std::filesystem::absolute(path, ignored), ignored);
}

}  // namespace

bool replacesAny(const std::string& output, const std::vector<std::string>& inputs) {
    Status existing{};
    if (::stat(output.c_str(), &existing) == -1) {
        const std::filesystem::path target = canonical(output);
        return std::ranges::find(inputs, target, canonical) != inputs.end();
    }
    return S_ISREG(existing.st_mode) && std::ranges::any_of(inputs, [&existing](const std::string& input) {
               const std::optional<Status> status = statusOf(input);
               return status && status->st_dev == existing.st_dev && status->st_ino == existing.st_ino;
           });
}

}  // namespace Report

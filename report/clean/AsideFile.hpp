#pragma once

#include <optional>
#include <string>

#include <sys/types.h>

#include "UniqueFd.hpp"

namespace Report {

/// A file that is written aside, and that takes its name only when it is complete. Until then, an existing
/// file of that name stays as it is. A device or a pipe is written directly.
class AsideFile {
public:
    /// Follows a symbolic link, so that the link stays. Without `mode`, an existing file's permissions
    /// remain. Throws std::system_error.
    explicit AsideFile(const std::string& path, std::optional<mode_t> mode = {});
    /// Removes the file unless it was kept.
    ~AsideFile();
    AsideFile(const AsideFile&) = delete;
    AsideFile& operator=(const AsideFile&) = delete;
    AsideFile(AsideFile&&) = delete;
    AsideFile& operator=(AsideFile&&) = delete;

    int descriptor() const { return fd.get(); }

    /// The name until the file is kept; empty if it is written directly.
    const std::string& temporaryName() const { return aside; }

    /// Gives the file its name. Nothing can be written after it. Throws std::system_error, for what an
    /// earlier write could not store too.
    void keep();

    /// Removes a file that was kept, if there was none of this name before.
    void takeBack() noexcept;

private:
    void openAside(mode_t mode);

    std::string target;
    std::string aside;     ///< empty if `target` is written directly, or was kept
    bool existed = false;  ///< there was a file before
    Base::UniqueFd fd;
};

}  // namespace Report

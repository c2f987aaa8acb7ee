#pragma once

#include <string>
#include <string_view>

namespace Fuzz {

/// A file of this process in the system's directory for temporary files, removed on destruction.
class ScratchFile {
public:
    explicit ScratchFile(const std::string& name);
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;
    ScratchFile(ScratchFile&&) = delete;
    ScratchFile& operator=(ScratchFile&&) = delete;
    ~ScratchFile();

    const std::string& path() const { return file; }
    void fill(std::string_view contents) const;

private:
    const std::string file;
};

}  // namespace Fuzz

#include "ScratchFile.hpp"

#include <filesystem>
#include <fstream>
#include <system_error>

#include <unistd.h>

#include "FuzzTarget.hpp"

namespace Fuzz {

namespace fs = std::filesystem;

ScratchFile::ScratchFile(const std::string& name)
    : file(fs::temp_directory_path() / ("korvel-fuzz-" + std::to_string(::getpid()) + "-" + name)) {
    fill("");
}

ScratchFile::~ScratchFile() {
    std::error_code ignored;
    fs::remove(file, ignored);
}

void ScratchFile::fill(std::string_view contents) const {
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    stream << contents << std::flush;
    require(stream.good(), "a scratch file is written");
}

}  // namespace Fuzz

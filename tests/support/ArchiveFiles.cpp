#include "ArchiveFiles.hpp"

#include <filesystem>

#include "Process.hpp"
#include "TestFiles.hpp"

namespace {

std::string unpacked(const std::string& path) {
    if (!std::filesystem::exists(path + ".gz")) {
        return {};
    }
    const Outcome outcome = run({"/bin/gzip", "-dc", path + ".gz"});
    return outcome.status == 0 ? outcome.out : "";
}

}  // namespace

ArchiveFiles::ArchiveFiles(const std::string& shortName)
    : directory("/tmp/korvel/archive/" + shortName),
      runtimePath(directory + "/runtime.log"),
      startupPath(directory + "/startup.log"),
      middlePath(directory + "/middle.log") {
}

std::string ArchiveFiles::startup() const {
    return unpacked(startupPath);
}

std::string ArchiveFiles::middle() const {
    return unpacked(middlePath);
}

std::string ArchiveFiles::runtime() const {
    return std::filesystem::is_regular_file(runtimePath) ? contentOfFile(runtimePath) : "";
}

#include "MapFile.hpp"

#include <stdexcept>

#include <sys/stat.h>

#include "CleanRefusal.hpp"
#include "DescriptorSink.hpp"
#include "MappingFile.hpp"
#include "SmallFile.hpp"

namespace Report {

Mapping MapFile::read() const {
    const std::string text = readSmallFile(path, largest);
    try {
        return parseMapping(text);
    } catch (const std::invalid_argument& error) {
        throw CleanRefusal(CleanRefusal::unusable, path + ": " + error.what());
    }
}

Mapping MapFile::readIfExists() {
    before = stamp();
    return before ? read() : Mapping();
}

std::optional<MapFile::Stamp> MapFile::stamp() const {
    struct stat status {};
    if (::stat(path.c_str(), &status) == -1) {
        return std::nullopt;
    }
    return Stamp{status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_mtim.tv_sec),
                 static_cast<std::uint64_t>(status.st_mtim.tv_nsec)};
}

AsideFile& MapFile::writeAside(const Mapping& mapping) {
    constexpr mode_t ownerOnly = 0600;
    aside.emplace(path, ownerOnly);
    DescriptorSink(aside->descriptor(), path).write(writeMapping(mapping));
    if (stamp() != before) {
        throw CleanRefusal(CleanRefusal::unusable,
                           path + ": another run has changed it meanwhile; try again");
    }
    return *aside;
}

}  // namespace Report

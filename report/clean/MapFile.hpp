#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

#include "AsideFile.hpp"
#include "Mapping.hpp"

namespace Report {

/// The file of a mapping, which one run reads and writes.
class MapFile {
public:
    /// `mostBytes` limits what is read.
    MapFile(std::string name, std::size_t mostBytes) : path(std::move(name)), largest(mostBytes) {}

    /// Throws CleanRefusal if the file is no mapping, and std::system_error if it cannot be read.
    Mapping read() const;

    /// The same for a file that need not exist; the mapping is then empty.
    Mapping readIfExists();

    /// Writes the mapping aside, with access only for its owner. Throws CleanRefusal if another run has
    /// written the file since readIfExists(): its replacements would be lost.
    AsideFile& writeAside(const Mapping& mapping);

private:
    /// What changes if another run writes the file.
    using Stamp = std::array<std::uint64_t, 4>;
    std::optional<Stamp> stamp() const;

    std::string path;
    std::size_t largest;
    std::optional<Stamp> before;
    std::optional<AsideFile> aside;
};

}  // namespace Report

#pragma once

#include <cstdint>
#include <string_view>

#include "PackageVisitor.hpp"

namespace Report {

/// A checksum of the texts of a package, in their order: names, owners and groups of members, and contents.
class PackageDigest {
public:
    void addHeader(const MemberHeader& header);
    void addContents(std::string_view bytes);

    bool operator==(const PackageDigest&) const = default;

private:
    std::uint64_t length = 0;
    std::uint32_t crc = 0;
};

}  // namespace Report

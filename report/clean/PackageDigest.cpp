#include "PackageDigest.hpp"

#include <string>

#include <zlib.h>

namespace Report {

void PackageDigest::addHeader(const MemberHeader& header) {
    for (const std::string* text : {&header.name, &header.owner, &header.group}) {
        addContents(*text);
        addContents(std::string_view("\0", 1));
    }
}

void PackageDigest::addContents(std::string_view bytes) {
    crc = static_cast<std::uint32_t>(
        ::crc32_z(crc, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()));
    length += bytes.size();
}

}  // namespace Report

#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace ReportTest {

/// The fields of a tar header, as they are written.
struct TarFields {
    std::string name = {};  ///< at most 100 bytes
    char type = '0';
    std::uint64_t size = 0;
    std::time_t time = 1795336233;  ///< 2026-11-22 08:30:33 UTC
    unsigned mode = 0644;
    unsigned uid = 0;
    unsigned gid = 0;
    std::string owner = "root";
    std::string group = "root";
    std::string target = {};  ///< at most 100 bytes
};

/// A header of 512 bytes, in GNU tar's format.
std::string tarHeader(const TarFields& fields);

/// Writes the right checksum into the header that begins at `offset`, for headers that a test changes.
void correctChecksum(std::string& tar, std::size_t offset = 0);

/// Contents of a member, padded with zeros to whole blocks of 512 bytes.
std::string tarBlocks(std::string_view contents);

/// The two blocks of zeros that end a tar archive.
std::string tarEndMark();

/// A record of an extended header, such as "20 path=long/name/..\n".
std::string paxRecord(std::string_view key, std::string_view value);

std::string gzip(std::string_view bytes, int level = 6);

/// The contents of a valid gzip stream.
std::string gunzip(std::string_view packed);

/// Builds packages in memory, member by member:
///
///     const std::string package =
///         PackageBuilder().directory("./fuse/").at(1795336000).file("./fuse/HistoryLog.log", "...").tgz();
///
/// at(), ownedBy() and mode() apply to all members that follow.
class PackageBuilder {
public:
    PackageBuilder& at(std::time_t time);
    PackageBuilder& ownedBy(const std::string& owner, const std::string& group);
    PackageBuilder& mode(unsigned permissions);

    /// Names above 100 bytes are written as GNU tar does.
    PackageBuilder& file(const std::string& name, std::string_view contents);
    PackageBuilder& directory(const std::string& name);
    PackageBuilder& symbolicLink(const std::string& name, const std::string& target);
    PackageBuilder& hardLink(const std::string& name, const std::string& target);
    /// A member of any type without contents, such as '3' for a device.
    PackageBuilder& special(const std::string& name, char type);
    /// Records of an extended header for the next member.
    PackageBuilder& pax(std::string_view records);
    /// Any blocks.
    PackageBuilder& raw(std::string_view added);

    /// With the end mark.
    std::string tar() const;
    std::string tgz() const;

private:
    PackageBuilder& add(const std::string& name, char type, std::string_view contents,
                        const std::string& target = {});
    PackageBuilder& write(const std::string& name, char type, std::string_view contents,
                          const std::string& target);

    std::string blocks;
    TarFields fields;  ///< of the next member
};

}  // namespace ReportTest

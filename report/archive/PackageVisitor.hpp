#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

#include <sys/types.h>

#include "LayerEnd.hpp"

namespace Report {

enum class MemberType : std::uint8_t { file, directory, symbolicLink, hardLink, device, fifo, other };

/// The header of a member of a tar archive. The names are bytes as they are in the archive: any byte but NUL.
struct MemberHeader {
    std::string name;
    bool nameCut = false;  ///< `name` is only the beginning, as long as the limit allows
    MemberType type = MemberType::file;
    std::uint64_t size = 0;  ///< bytes of its contents; 0 unless it is a file
    std::timespec time = {};
    mode_t mode = 0;  ///< permissions only, 07777 at most
    uid_t uid = 0;
    gid_t gid = 0;
    std::string owner;
    std::string group;
    std::string target;  ///< of a link
};

/// Receives a package in the order of its bytes. The calls follow this grammar; a package is the outermost
/// gzip:
///
///     gzip   = enterGzip (tar | gzip | data*) leaveGzip
///     tar    = enterTar member* leaveTar
///     member = beginMember (gzip | data*) endMember
///
/// A member or layer that starts like gzip is a gzip layer, whatever the name of the member. What a layer
/// contains is a tar archive if it starts with the header of a member.
///
/// So the data of a `.gz` piece arrive inflated, between enterGzip and leaveGzip, and a nested package
/// arrives as its members. Each enter... has its leave..., each begin its end, even if the package is cut in
/// between.
class PackageVisitor {
public:
    PackageVisitor() = default;
    PackageVisitor(const PackageVisitor&) = delete;
    PackageVisitor& operator=(const PackageVisitor&) = delete;
    PackageVisitor(PackageVisitor&&) = delete;
    PackageVisitor& operator=(PackageVisitor&&) = delete;
    virtual ~PackageVisitor() = default;

    virtual void enterGzip() = 0;
    /// Limit::depth if the layer is one too many inside another one: its bytes are then left out.
    virtual void leaveGzip(const LayerEnd& end) = 0;
    virtual void enterTar() = 0;
    virtual void leaveTar(const LayerEnd& end) = 0;

    /// A name that is longer than the limit is cut to it; endMember then reports Limit::name, and the data of
    /// this member are not read.
    virtual void beginMember(const MemberHeader& header) = 0;
    /// Bytes of the innermost member or layer, in pieces of any size.
    virtual void data(std::string_view bytes) = 0;
    /// Cut if the archive ends inside the member. Limit::depth if the member is one layer too many: its bytes
    /// are then left out.
    virtual void endMember(const LayerEnd& end) = 0;
};

}  // namespace Report

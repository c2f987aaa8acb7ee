#pragma once

#include <cstdint>
#include <string_view>

#include "ByteSink.hpp"
#include "PackageVisitor.hpp"

namespace Report {

/// Writes a tar archive as GNU tar does: long names stand in members of their own before the header, and
/// large numbers in binary. Fractions of a second and long owners stand in an extended header.
class TarWriter : public ByteSink {
public:
    /// `sink` must outlive this object.
    explicit TarWriter(ByteSink& sink) : out(sink) {}

    /// Writes the header of a member with `size` bytes of contents. Throws std::invalid_argument for a
    /// device, or a member of unknown type.
    void beginMember(const MemberHeader& header, std::uint64_t size);
    /// Contents of the current member.
    void write(std::string_view bytes) override;
    /// Throws std::logic_error if write() got another number of bytes than beginMember() promised.
    void endMember();

    /// Writes the end mark.
    void finish();

private:
    void writeSpecial(char type, std::string_view name, std::string_view contents);
    void pad();

    ByteSink& out;
    std::uint64_t promised = 0;  ///< bytes of the current member
    std::uint64_t written = 0;
};

}  // namespace Report

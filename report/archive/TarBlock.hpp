#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace Report {

/// Bytes of a block, the unit of a tar archive.
constexpr std::size_t tarBlockSize = 512;

/// Where the header of a member holds its checksum.
constexpr std::size_t tarChecksumAt = 148;
constexpr std::size_t tarChecksumSize = 8;

/// The two blocks of zeros that end an archive.
inline constexpr std::array<char, 2 * tarBlockSize> tarEndMark{};

/// The checksum of a header: the sum of its bytes, with blanks in place of the checksum.
unsigned tarChecksum(std::string_view header);

/// Whether this first block of a stream, or the part of a block that is the whole stream, begins a tar
/// archive with members.
bool startsLikeTar(std::string_view block);

}  // namespace Report

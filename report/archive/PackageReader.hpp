#pragma once

#include <cstdint>
#include <string>

#include "Budget.hpp"
#include "ByteSource.hpp"
#include "PackageVisitor.hpp"

namespace Report {

/// What the reading of a whole package found.
struct PackageFacts {
    LayerEnd end;        ///< the outermost layers: gzip and tar
    std::string sha256;  ///< of all bytes of the file, in hexadecimal; empty if time ran out before its end
    std::uint64_t size = 0;  ///< bytes of the file that were read; without a checksum, the file can be larger
};

/// Reads a package and everything nested in it, and calls the visitor. Reads the file to its end, for the
/// checksum, even if the package is damaged. Follows no link and writes nothing. Stops at the first damaged
/// header of a tar archive. The end of the package:
///
/// - cut: the gzip stream ends early, or the tar ends inside a member or without two blocks of zeros at its
/// end
/// - altered: not gzip, not tar, a checksum or length differs, or something other than zeros follows the gzip
///   trailer or the end mark of the tar
/// - notRead: a limit of the budget ended the reading; what the package would have been is unknown
///
/// Throws std::system_error if the file cannot be read, and whatever the visitor throws.
PackageFacts readPackage(ByteSource& source, Budget& budget, PackageVisitor& visitor);

}  // namespace Report

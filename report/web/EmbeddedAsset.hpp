#pragma once

#include <span>
#include <string_view>

namespace Report {

/// One row of the table that the build writes.
struct EmbeddedAsset {
    std::string_view name;
    std::string_view hash;                     ///< "sha256-" and base64, of all pieces together
    std::span<const std::string_view> pieces;  ///< the text, because compilers limit the length of a literal
};

/// Defined in the file that Embed.cmake writes.
std::span<const EmbeddedAsset> embeddedAssets();

}  // namespace Report

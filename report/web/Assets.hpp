#pragma once

#include <string>
#include <string_view>

namespace Report {

/// The text of a file that the build put into the program: a template such as "parts.mustache", the style
/// "page.css", the script "page.js", or the script with the plotting library in front, "page-with-plots.js".
/// Throws std::out_of_range for any other name.
std::string webAsset(std::string_view name);

/// The SHA-256 of the same text as a source of a Content-Security-Policy: "sha256-" and base64. Throws
/// std::out_of_range as webAsset() does.
std::string_view webAssetHash(std::string_view name);

}  // namespace Report

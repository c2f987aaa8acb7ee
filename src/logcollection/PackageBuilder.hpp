#pragma once

#include <string>

namespace Korvel {

/// Packs the work directory into one gzip-compressed tar file. Reports commands that fail, and continues.
class PackageBuilder {
public:
    /// `packageBasePath`: common prefix of all package paths.
    PackageBuilder(const std::string& workspaceDir, const std::string& packageBasePath);

    /// Builds the package of the first kind in `outputMask` (bits of OutputMode). Kinds with a fixed name
    /// include the output of the platform's log gathering, and some also the last post-mortem package. They
    /// replace the previous package of their kind. The default kind has a timestamp in its name.
    void build(unsigned outputMask) const;

private:
    void copyPostMortemPackage() const;
    void gatherLinuxLogs() const;
    void archive(const std::string& packageFile) const;

    std::string workspaceDir;
    std::string packageBasePath;
};

}  // namespace Korvel

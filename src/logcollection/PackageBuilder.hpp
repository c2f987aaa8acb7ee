#pragma once

#include <string>

namespace Korvel {

/// Packs the work directory into one gzip-compressed tar file. Commands that fail are reported and do not
/// stop the ones behind them.
class PackageBuilder {
public:
    /// `packageBasePath`: what the names of all packages begin with.
    PackageBuilder(const std::string& workspaceDir, const std::string& packageBasePath);

    /// Builds the package of the first kind in `outputMask` (bits of OutputMode). The kinds with a name of
    /// their own take in the output of the platform's log gathering, some the last post-mortem package too,
    /// and replace the previous package of their kind; the plain one has the time in its name.
    void build(unsigned outputMask) const;

private:
    void copyPostMortemPackage() const;
    void gatherLinuxLogs() const;
    void archive(const std::string& packageFile) const;

    std::string workspaceDir;
    std::string packageBasePath;
};

}  // namespace Korvel

#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Arguments.hpp"
#include "LogForms.hpp"
#include "Package.hpp"
#include "PackageLoader.hpp"
#include "RuleSet.hpp"

namespace Report {

/// What the subcommands read of packages.
struct Reading {
    Keep keep = Keep::all;
    std::shared_ptr<const LogForms> forms =
        nullptr;  ///< of log lines, from rules; not needed without log entries
};

/// Reads and judges a package. If it cannot be read, `reason` is why. Throws SidecarError for the file of
/// --run.
std::optional<Package> tryReadJudged(const std::string& path, const Arguments& arguments,
                                     const Reading& reading, std::string& reason);

/// Reports on standard error why something cannot be done with a package.
void complainOf(const std::string& path, const std::string& reason);

/// As tryReadJudged, and complains of a package that cannot be read.
std::optional<Package> readJudged(const std::string& path, const Arguments& arguments, const Reading& reading,
                                  std::string& reason);

/// Calls `use` with each package of the command line, one after the other. Returns the highest status: those
/// of `use`, and exitTrouble for a package that cannot be read.
int useEach(const Arguments& arguments, const Reading& reading, const std::function<int(Package&)>& use);

/// A package of the command line that cannot be read.
struct UnreadablePackage {
    std::string path;
    std::string reason;
    std::size_t place;  ///< on the command line
};

/// All packages of the command line, with findings.
struct Packages {
    std::vector<Package> list;
    std::vector<UnreadablePackage> unreadable;
};

Packages readAll(const Arguments& arguments, const RuleSet& rules);

/// Throws OutputError if --output names a file that the arguments have the program read: a package, its
/// sidecar, a store, a file of rules. clean and restore check more files themselves.
void checkOutput(const Arguments& arguments);

/// The shipped rules and those of --rules. Throws RuleError, and std::system_error for a file that cannot be
/// read.
RuleSet readRules(const Arguments& arguments);

}  // namespace Report

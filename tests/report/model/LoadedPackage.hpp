#pragma once

#include <chrono>
#include <cstddef>
#include <string>

#include "PackageLoader.hpp"

namespace ReportTest {

/// A folder for the files of one test. It is removed at the end.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    TemporaryFolder(TemporaryFolder&&) = delete;
    TemporaryFolder& operator=(TemporaryFolder&&) = delete;

    /// Writes a file, and returns its path.
    std::string write(const std::string& name, const std::string& content) const;
    std::string path(const std::string& name) const { return folder + '/' + name; }

private:
    std::string folder;
};

/// The time in the tests: 2027-01-01 00:00:00 UTC, after the time of every package.
constexpr Report::Time testTime = std::chrono::sys_days(std::chrono::year(2027) / 1 / 1);

/// Loads a package from a file, at the time of the tests.
Report::Package loadFile(const std::string& path, const Report::LoadOptions& options = {});

/// Loads a package with these bytes from a file of this name. The package's source is the name alone.
Report::Package load(const std::string& bytes, const Report::LoadOptions& options = {},
                     const std::string& name = "board-7.tgz");

/// The entries of a log, a line for each. Lines of an entry are joined by "|".
std::string entriesOf(const Report::Package& package, const std::string& part,
                      std::size_t maxLine = std::size_t{1} << 20);

/// The part with this name, which must exist.
const Report::Part& partOf(const Report::Package& package, const std::string& name);

}  // namespace ReportTest

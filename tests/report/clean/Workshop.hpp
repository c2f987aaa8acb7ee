#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Cleaner.hpp"

namespace ReportTest {

/// A folder with a package, in which a test cleans and restores.
class Workshop : public testing::Test {
public:
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;
    Workshop(Workshop&&) = delete;
    Workshop& operator=(Workshop&&) = delete;
    ~Workshop() override;

protected:
    Workshop();

    std::string path(const std::string& name) const { return (folder / name).string(); }
    void write(const std::string& name, const std::string& bytes) const;
    std::string read(const std::string& name) const;
    /// The names in the folder, sorted.
    std::vector<std::string> files() const;

    /// A request that cleans "in.tgz" to "out.tgz", with the mapping "out.tgz.map".
    Report::CleanRequest cleanRequest() const;
    /// A request that restores "out.tgz" to "back.tgz".
    Report::RestoreRequest restoreRequest() const;

    /// "STATUS: MESSAGE" of the refusal; the folder's path in it is "DIR".
    std::string refusalOf(const Report::CleanRequest& request) const;
    std::string refusalOf(const Report::RestoreRequest& request) const;

    /// The notes, a line each; the folder's path in them is "DIR".
    std::string notesOf(const Report::CleanRequest& request) const;

    /// The members of a package and of what is nested in it, with owners, times and contents.
    static std::string listing(const std::string& package);

    /// The checksum of a file.
    std::string sha256Of(const std::string& name) const;

    std::string withoutFolder(std::string text) const;

private:
    std::filesystem::path folder;
};

}  // namespace ReportTest

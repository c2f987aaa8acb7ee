#include "PackageFixture.hpp"

#include <algorithm>
#include <filesystem>

#include "TestFiles.hpp"
#include "TextFile.hpp"

using Boardsim::linesOf;

std::string PackageFixture::package(const std::string& suffix) {
    return std::string(packageDir) + "/netfp_logs" + suffix;
}

std::string PackageFixture::listingOf(const std::string& path) {
    return run({"tar", "tzf", path}).out;
}

Words PackageFixture::membersOf(const std::string& path) {
    Words members = linesOf(listingOf(path));
    std::sort(members.begin(), members.end());
    return members;
}

Files PackageFixture::filesIn(const std::string& path) {
    const std::string directory = "/tmp/unpacked";
    std::filesystem::remove_all(directory);
    std::filesystem::create_directories(directory);
    EXPECT_EQ(run({"tar", "xzf", path, "-C", directory}), success());
    Files files;
    for (const std::string& file : filesBelow(directory)) {
        files[file] = contentOfFile(std::string(directory).append("/").append(file));
    }
    return files;
}

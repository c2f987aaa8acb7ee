#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

#include <gtest/gtest.h>

#include "Description.hpp"
#include "LoadedPackage.hpp"
#include "PackageBuilder.hpp"
#include "PackageLoader.hpp"

namespace ReportTest {
namespace {

using Report::Package;

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// The entries of all logs, also of nested packages.
std::string logsOf(const Package& package) {
    std::string text;
    for (const Report::Part& part : package.parts) {
        text += part.log ? "log " + part.name + '\n' + entriesOf(package, part.name) : "";
    }
    for (const Package& nested : package.nested) {
        text += "nested " + nested.source + '\n' + logsOf(nested);
    }
    return text;
}

// The expected texts are beside the packages. With UPDATE_PACKAGES in the environment, they are written
// again.
TEST(PackageLoaderTest, ReadsEverythingThatKorvelPacked) {
    for (const char* const name :
         {"netfp_logs_sup", "netfp_logs_261122_083033", "netfp_logs", "antenna-7", "archive"}) {
        const std::string file = std::string(KORVEL_REPORT_DATA) + '/' + name;
        Package package = loadFile(file + ".tgz");
        package.source = name;
        const std::string text = describe(package) + logsOf(package);
        if (std::getenv("UPDATE_PACKAGES") != nullptr) {
            std::ofstream(file + ".txt") << text;
        }
        EXPECT_EQ(text, contentOf(file + ".txt"));
    }
}

}  // namespace
}  // namespace ReportTest

#include <filesystem>
#include <string>

#include <gmock/gmock.h>

#include "PackageBuilder.hpp"
#include "Workshop.hpp"

namespace ReportTest {
namespace {

using testing::HasSubstr;

class RestorerTest : public Workshop {
protected:
    RestorerTest() {
        write("out.tgz.map",
              "korvel-report map 1\n"
              "ip4 10.0.0.1 17.4.6.2\n"
              "ip4 17.4.6.2 19.3.3.8\n"
              "ip6 fe80:0:0:0:0:0:0:a bc13:0:0:0:0:0:0:d\n"
              "mac 40:11:22:33:44:5f 40:03:91:18:72:6a\n"
              "name bob dqz\n"
              "name bts-17 dzq-52\n");
    }

    std::string restored(const std::string& text) const {
        write("answer.txt", text);
        Report::RestoreRequest request = restoreRequest();
        request.input = path("answer.txt");
        request.output = path("back.txt");
        Report::restore(request);
        return read("back.txt");
    }
};

TEST_F(RestorerTest, UndoesTheReplacementsInAnyText) {
    EXPECT_EQ(restored("Hello, Dqz at DZQ-52: 17.4.6.2:80 (bc13::d%eth0) 40-03-91-18-72-6A, 400391187 26a.\n"
                       "4003.9118.726a 40039118726a dqzx 17.4.6.20 unchanged"),
              "Hello, Bob at BTS-17: 10.0.0.1:80 (fe80::a%eth0) 40-11-22-33-44-5F, 400391187 26a.\n"
              "4011.2233.445f 40112233445f dqzx 17.4.6.20 unchanged");
    EXPECT_EQ(restored(""), "");
}

TEST_F(RestorerTest, WorksInOnePass) {
    EXPECT_EQ(restored("17.4.6.2 19.3.3.8 10.0.0.1"), "10.0.0.1 17.4.6.2 10.0.0.1");
}

TEST_F(RestorerTest, RestoresALongTextWithoutLines) {
    std::string text;
    std::string expected;
    while (text.size() < 300'000) {
        text += "17.4.6.2,dqz;";
        expected += "10.0.0.1,bob;";
    }
    EXPECT_EQ(restored(text), expected);
}

TEST_F(RestorerTest, RestoresPackagesAndTheirNestedLayers) {
    const auto package = [](const std::string& user, const std::string& address) {
        return PackageBuilder()
            .directory("./")
            .ownedBy(user, "root")
            .file("./linux/" + address + ".log", address + "\n")
            .file("./startup.log.gz", gzip(user + "\n"))
            .file("./inner.tgz", PackageBuilder().file("./" + user, address).tgz())
            .tgz();
    };
    write("out.tgz", package("dqz", "17.4.6.2"));
    Report::restore(restoreRequest());
    EXPECT_EQ(listing(read("back.tgz")), listing(package("bob", "10.0.0.1")));
}

TEST_F(RestorerTest, WritesToStandardOutputByDefault) {
    write("out.tgz", "17.4.6.2\n");
    Report::RestoreRequest request = restoreRequest();
    request.output.reset();
    testing::internal::CaptureStdout();
    Report::restore(request);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "10.0.0.1\n");
}

TEST_F(RestorerTest, RefusesWhatItCannotRestore) {
    const std::string package = PackageBuilder().file("./x", "17.4.6.2\n").tgz();
    write("out.tgz", package.substr(0, package.size() - 10));
    EXPECT_THAT(refusalOf(restoreRequest()), testing::StartsWith("2: DIR/out.tgz: "));
    write("out.tgz", PackageBuilder().symbolicLink("./x", "y").tgz());
    EXPECT_EQ(refusalOf(restoreRequest()), "1: DIR/out.tgz: ./x: it is a link, which is not followed");
    write("out.tgz.map", "x\n");
    EXPECT_EQ(refusalOf(restoreRequest()), "3: DIR/out.tgz.map: line 1: not a map of korvel-report");
    std::filesystem::remove(path("out.tgz.map"));
    EXPECT_EQ(refusalOf(restoreRequest()), "3: DIR/out.tgz.map: No such file or directory");
    std::filesystem::remove(path("out.tgz"));
    EXPECT_EQ(refusalOf(restoreRequest()), "3: DIR/out.tgz: No such file or directory");
    EXPECT_THAT(files(), testing::IsEmpty());
}

}  // namespace
}  // namespace ReportTest

#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "LeakCheck.hpp"
#include "MappingFile.hpp"
#include "PackageBuilder.hpp"
#include "Workshop.hpp"

namespace ReportTest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

class CleanerTest : public Workshop {
protected:
    /// Writes "in.tgz" with one text.
    void writeText(const std::string& text) const {
        write("in.tgz", PackageBuilder().file("./linux/x.log", text).tgz());
    }

    std::string cleaned() const { return listing(read("out.tgz")); }

    /// The replacement in the mapping.
    std::string replacementOf(const std::string& line, const std::string& map = "out.tgz.map") const {
        const std::string text = read(map);
        const std::size_t begin = text.find("\n" + line + " ");
        return begin == std::string::npos ? "none"
                                          : text.substr(begin + line.size() + 2,
                                                        text.find('\n', begin + 1) - begin - line.size() - 2);
    }

    void expectRefusal(const Report::CleanRequest& request, const std::string& refusal) const {
        const std::vector<std::string> before = files();
        EXPECT_EQ(refusalOf(request), refusal);
        EXPECT_EQ(files(), before);
    }
};

TEST_F(CleanerTest, ReplacesAddressesAndNamesInAllPlaces) {
    write("in.tgz",
          PackageBuilder()
              .ownedBy("alice", "radio")
              .file("./linux/10.0.0.1.log", "root@bts-17:~# ping 10.0.0.1\n")
              .file("./archive/syslib/startup.log.gz", gzip("Radio 10.0.0.1\n"))
              .file("./netfp_logs_post_mortem.tgz",
                    PackageBuilder().ownedBy("bob", "root").file("./linux/alice.log", "BTS-17\n").tgz())
              .tgz());
    EXPECT_EQ(notesOf(cleanRequest()), "");

    const std::string after = cleaned();
    for (const std::string original : {"alice", "bob", "radio", "Radio", "bts-17", "BTS-17", "10.0.0.1"}) {
        EXPECT_THAT(after, Not(HasSubstr(original)));
    }
    EXPECT_THAT(after,
                HasSubstr("./linux/" + replacementOf("ip4 10.0.0.1") + ".log " + replacementOf("name alice") +
                          "/" + replacementOf("name radio") + " 0/0 420 "));
    EXPECT_THAT(after, HasSubstr("{\nroot@" + replacementOf("name bts-17") + ":~# ping " +
                                 replacementOf("ip4 10.0.0.1") + "\n"));
    EXPECT_EQ(after.size(), listing(read("in.tgz")).size());
    EXPECT_EQ(files(), (std::vector<std::string>{"in.tgz", "out.tgz", "out.tgz.map"}));
}

TEST_F(CleanerTest, KeepsTheMappingSecret) {
    writeText("10.0.0.1\n");
    Report::cleanPackage(cleanRequest());
    struct stat status {};
    ASSERT_EQ(::stat(path("out.tgz.map").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
    EXPECT_THAT(cleaned(), Not(HasSubstr("korvel-report map")));

    // An existing file loses the permissions of others.
    std::filesystem::permissions(path("out.tgz.map"), std::filesystem::perms(0644));
    Report::cleanPackage(cleanRequest());
    ASSERT_EQ(::stat(path("out.tgz.map").c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0600U);
}

TEST_F(CleanerTest, FitsThePackagesOfACaseTogether) {
    Report::CleanRequest request = cleanRequest();
    request.map = path("case.map");
    writeText("10.0.0.1 bob@bts-17: x\n");
    Report::cleanPackage(request);
    const std::string earlier = read("case.map");

    // The second package holds a replacement of the first one, and an original that nothing names here.
    const std::string text = replacementOf("ip4 10.0.0.1", "case.map") + " 10.0.0.1 10.0.0.2 Bob " +
                             replacementOf("name bob", "case.map") + "\n";
    writeText(text);
    request.output = path("second.tgz");
    Report::cleanPackage(request);

    for (const std::string line : {"ip4 10.0.0.1", "name bob", "name bts-17"}) {
        EXPECT_THAT(earlier, HasSubstr(line + " " + replacementOf(line, "case.map") + "\n"));
    }
    EXPECT_NE(replacementOf("ip4 " + replacementOf("ip4 10.0.0.1", "case.map"), "case.map"), "none");
    EXPECT_NE(replacementOf("name " + replacementOf("name bob", "case.map"), "case.map"), "none");
    Report::RestoreRequest back = restoreRequest();
    back.input = request.output;
    back.map = request.map;
    Report::restore(back);
    EXPECT_THAT(listing(read("back.tgz")), HasSubstr("{\n" + text + "\n}"));
}

TEST_F(CleanerTest, ReplacesWordsOfAListAsWholeWordsInAnyCase) {
    write("words", "# places\n\nTampere\r\n  Site-9\nM\xc3\xbcller\n");
    writeText("tampere TAMPERE Tampere2 my-tampere tampere_x (Tampere) site-9 site M\xc3\x9cLLER\n");
    Report::CleanRequest request = cleanRequest();
    request.words = path("words");
    EXPECT_EQ(notesOf(request), "");
    const std::string after = cleaned();
    const std::string tampere = replacementOf("name tampere");
    EXPECT_THAT(after, HasSubstr("{\n" + tampere + " "));
    EXPECT_THAT(after, HasSubstr(" Tampere2 my-tampere tampere_x ("));
    EXPECT_THAT(after, HasSubstr(" " + replacementOf("name site-9") + " site "));
    EXPECT_THAT(after, Not(HasSubstr("TAMPERE")));
    EXPECT_THAT(after, Not(HasSubstr("M\xc3\x9cLLER")));
}

TEST_F(CleanerTest, RefusesAListWithALineThatIsNoWord) {
    writeText("x\n");
    Report::CleanRequest request = cleanRequest();
    request.words = path("words");
    for (const std::string line : {"two words", "a.b", "--", "\xff", "caf\xc3"}) {
        write("words", "one\n" + line + "\n");
        expectRefusal(request,
                      "3: DIR/words: line 2: not one word of at most 255 bytes: letters, digits, - and _");
    }
    std::filesystem::remove(path("words"));
    expectRefusal(request, "3: DIR/words: No such file or directory");
}

TEST_F(CleanerTest, CountsWhatItReplacesIfThisIsWanted) {
    write("in.tgz", PackageBuilder()
                        .ownedBy("alice", "radio")
                        .file("./linux/system.log", "10.0.0.1 10.0.0.1 00:11:22:33:44:55 127.0.0.1 eth1\n")
                        .tgz());
    write("words", "eth1\nunseen\n");
    Report::CleanRequest request = cleanRequest();
    request.words = path("words");
    request.summary = true;
    EXPECT_EQ(notesOf(request),
              "DIR/out.tgz: 2 addresses and 3 names replaced; the map is DIR/out.tgz.map\n");
}

TEST_F(CleanerTest, LeavesFixedNames) {
    const std::string text = "root@fuse:\n<netfp_proxy_dump>\n</netfp_proxy_dump>\n";
    write("in.tgz",
          PackageBuilder().ownedBy("www-data", "nogroup").file("./fuse/iwf/tracing_on.log", text).tgz());
    write("words", "IWF\nlog\nroot\n");
    Report::CleanRequest request = cleanRequest();
    request.words = path("words");
    EXPECT_EQ(notesOf(request),
              "DIR/words: line 1: iwf stays: it is a fixed name\n"
              "DIR/words: line 2: log stays: it is a fixed name\n"
              "DIR/words: line 3: root stays: it is a fixed name\n");
    EXPECT_EQ(cleaned(), listing(read("in.tgz")));
}

TEST_F(CleanerTest, ReplacesBareDigitsOnlyIfTheyAreAHardwareAddressElsewhere) {
    writeText("40-11-22-33-44-5F 40112233445f 40112233446f 401122fffe33445f\n");
    Report::cleanPackage(cleanRequest());
    std::string digits;
    for (const char byte : replacementOf("mac 40:11:22:33:44:5f")) {
        digits += byte == ':' ? "" : std::string(1, byte);
    }
    EXPECT_THAT(cleaned(), HasSubstr(" " + digits + " 40112233446f "));
}

TEST_F(CleanerTest, ReplacesBareDigitsThatAreMadeFromAKnownHardwareAddress) {
    writeText(
        "40:11:22:33:44:5f 421122fffe33445f 401122fffe33445f fe80000000000000421122fffe33445f "
        "421122fffe33446f\n");
    Report::cleanPackage(cleanRequest());
    EXPECT_THAT(cleaned(), Not(HasSubstr("1122fffe33445f")));
    EXPECT_THAT(cleaned(), HasSubstr(" 421122fffe33446f\n"));
}

TEST_F(CleanerTest, ReplacesNamesThatHoldTwelveDigits) {
    writeText("root@bts-401122334455:~# x\nBTS-401122334455 40112233445f 1.3.6.1.10.0.0.1 10.0.0.1\n");
    write("words", "40112233445f\n");
    Report::CleanRequest request = cleanRequest();
    request.words = path("words");
    EXPECT_EQ(notesOf(request), "");
    for (const std::string original : {"401122334455", "40112233445f", "10.0.0.1"}) {
        EXPECT_THAT(cleaned(), Not(HasSubstr(original)));
    }
}

TEST_F(CleanerTest, CleansTheSidecar) {
    write("in.tgz", PackageBuilder().file("./linux/x.log", "10.0.0.1\n").tgz());
    const std::string sha256 = sha256Of("in.tgz");
    write("in.tgz.run", "format: 1\nboard: BTS-17.site.net\ncommand: korvel pkg-sup\nsha256: " + sha256 +
                            "\nprobe: ping: 10.0.0.1 lost\n\nkorvel: cannot reach bts-17\nboard: bts-17\n");
    Report::CleanRequest request = cleanRequest();
    request.runFile = path("in.tgz.run");
    EXPECT_EQ(notesOf(request), "");

    const std::string board = replacementOf("name bts-17");
    std::string upper = board;
    std::ranges::transform(upper, upper.begin(),
                           [](char byte) { return byte >= 'a' ? static_cast<char>(byte - 32) : byte; });
    EXPECT_EQ(read("out.tgz.run"), "format: 1\nboard: " + upper + "." + replacementOf("name site") +
                                       ".net\ncommand: korvel pkg-sup\nsha256: " + sha256Of("out.tgz") +
                                       "\nprobe: ping: " + replacementOf("ip4 10.0.0.1") +
                                       " lost\n\nkorvel: cannot reach " + board + "\nboard: " + board + "\n");

    Report::RestoreRequest back = restoreRequest();
    back.runFile = path("out.tgz.run");
    Report::restore(back);
    EXPECT_THAT(read("back.tgz.run"), HasSubstr("board: BTS-17.site.net\n"));
    EXPECT_THAT(read("back.tgz.run"), HasSubstr("sha256: " + sha256Of("back.tgz") + "\n"));
}

TEST_F(CleanerTest, LeavesOutASidecarOfAnotherPackage) {
    writeText("10.0.0.1\n");
    Report::CleanRequest request = cleanRequest();
    request.runFile = path("in.tgz.run");
    write("in.tgz.run", "format: 1\nboard: bts-17\nsha256: 00\n\n");
    EXPECT_EQ(notesOf(request), "DIR/in.tgz.run: left out: its checksum is not the package's\n");
    EXPECT_EQ(files(), (std::vector<std::string>{"in.tgz", "in.tgz.run", "out.tgz", "out.tgz.map"}));
    EXPECT_THAT(read("out.tgz.map"), Not(HasSubstr("bts-17")));
    write("in.tgz.run", "format: 1\nboard: bts-17\n\n");
    EXPECT_EQ(notesOf(request), "DIR/in.tgz.run: left out: it has no checksum of the package\n");
}

TEST_F(CleanerTest, RefusesADamagedPackageAndLeavesNothing) {
    const std::string package = PackageBuilder().file("./linux/x.log", "10.0.0.1\n").tgz();
    write("in.tgz", package.substr(0, package.size() - 20));
    EXPECT_THAT(refusalOf(cleanRequest()), testing::StartsWith("2: DIR/in.tgz: "));
    std::string altered = package;
    altered[altered.size() - 6] ^= 1;
    write("in.tgz", altered);
    EXPECT_THAT(refusalOf(cleanRequest()), testing::StartsWith("2: DIR/in.tgz: "));
    write("in.tgz", "10.0.0.1\n");
    EXPECT_THAT(refusalOf(cleanRequest()), testing::StartsWith("2: DIR/in.tgz: "));
    EXPECT_THAT(files(), ElementsAre("in.tgz"));
}

TEST_F(CleanerTest, RefusesAPackageWithAnythingThatIsNotReadOrNotFollowed) {
    const std::string piece = gzip("10.0.0.1\n");
    const std::string inner = PackageBuilder().symbolicLink("./x", "y").tgz();
    const struct {
        PackageBuilder package;
        std::string reason;
    } cases[] = {
        {PackageBuilder().symbolicLink("./x", "y"), "./x: it is a link, which is not followed"},
        {PackageBuilder().hardLink("./x", "y"), "./x: it is a link, which is not followed"},
        {PackageBuilder().special("./x", '3'), "./x: it is a device, which is not read"},
        {PackageBuilder().special("./x", '6'), "./x: it is a FIFO, which is not read"},
        {PackageBuilder().file("./a/../x", ""), "./a/../x: name with .."},
        {PackageBuilder().file("/x", ""), "/x: absolute name"},
        {PackageBuilder().file("./x", "").file("x", ""), "x: there are two members of this name"},
        {PackageBuilder().file("./x.xz", std::string("\xfd"
                                                     "7zXZ\0\0",
                                                     7)),
         "./x.xz: it is compressed in a form that is not read"},
        {PackageBuilder().file("./inner.tgz", inner),
         "./inner.tgz: ./x: it is a link, which is not followed"},
    };
    for (const auto& [package, reason] : cases) {
        write("in.tgz", package.tgz());
        expectRefusal(cleanRequest(), "1: DIR/in.tgz: " + reason);
    }
    write("in.tgz", PackageBuilder().file("./startup.log.gz", piece.substr(0, piece.size() - 3)).tgz());
    EXPECT_THAT(refusalOf(cleanRequest()), testing::StartsWith("1: DIR/in.tgz: ./startup.log.gz: "));

    write("in.tgz", PackageBuilder().file("./x", "x").file("./y", "y").tgz());
    Report::CleanRequest request = cleanRequest();
    request.limits.maxMembers = 1;
    expectRefusal(request, "1: DIR/in.tgz: the limit --max-members was reached");
}

TEST_F(CleanerTest, RefusesATooLargeNumberOfOriginals) {
    std::string text;
    for (int number = 0; number < 5000; ++number) {
        text += "10.0." + std::to_string(number / 256) + "." + std::to_string(number % 256) + "\n";
    }
    writeText(text);
    Report::CleanRequest request = cleanRequest();
    request.limits.maxMemory = std::size_t{1} << 20;
    EXPECT_THAT(refusalOf(request), HasSubstr("the limit --max-memory was reached"));
    EXPECT_THAT(files(), ElementsAre("in.tgz"));
}

TEST_F(CleanerTest, RefusesFilesThatItCannotUse) {
    Report::CleanRequest request = cleanRequest();
    expectRefusal(request, "3: DIR/in.tgz: No such file or directory");
    writeText("10.0.0.1\n");
    request.output = path("in.tgz");
    expectRefusal(request, "3: DIR/in.tgz: the clean package would replace the original");
    request.output = "-";
    expectRefusal(request, "3: -: the clean package needs a regular file");
    request.output = path("");
    EXPECT_THAT(refusalOf(request), HasSubstr("the clean package needs a regular file"));
    request.output = path("nowhere/out.tgz");
    expectRefusal(request, "3: DIR/nowhere/out.tgz: No such file or directory");
    request = cleanRequest();
    request.map = request.output;
    expectRefusal(request, "3: DIR/out.tgz: the map needs a file of its own");
    request.map = path("out.tgz.run");
    expectRefusal(request, "3: DIR/out.tgz.run: the map needs a file of its own");
    request.map = path("case.map");
    write("case.map", "korvel-report map 1\nip4 10.0.0.1\n");
    expectRefusal(request, "3: DIR/case.map: line 2: not a kind, an original and its replacement");
}

TEST_F(CleanerTest, KeepsTheEarlierFilesIfItRefuses) {
    writeText("10.0.0.1\n");
    Report::cleanPackage(cleanRequest());
    const std::string package = read("out.tgz");
    const std::string map = read("out.tgz.map");
    write("in.tgz", PackageBuilder().file("./x", "10.0.0.2").symbolicLink("./y", "x").tgz());
    EXPECT_THAT(refusalOf(cleanRequest()), testing::StartsWith("1: "));
    EXPECT_EQ(read("out.tgz"), package);
    EXPECT_EQ(read("out.tgz.map"), map);
}

TEST_F(CleanerTest, RefusesAnOriginalWithoutAReplacement) {
    writeText("::2 ::3 ::4 ::5 ::6 ::7 ::8 ::9\n");
    expectRefusal(cleanRequest(), "1: no replacement of the same length is left for 0:0:0:0:0:0:0:2");
    // An earlier replacement wins, even if it does not fit into a new spelling.
    write("out.tgz.map", "korvel-report map 1\nip4 10.0.0.1 99.4.6.2\n");
    writeText("::ffff:a00:1\n");
    expectRefusal(cleanRequest(),
                  "1: the replacement in the map does not fit into the spelling ::ffff:a00:1");
}

TEST_F(CleanerTest, ChoosesAgainIfAReplacementFormsAnOriginalWithTheNumbersAroundIt) {
    const std::vector<std::string> originals{"5.1.0.0", "5.2.0.0", "5.3.0.0", "5.4.0.0", "5.5.0.0",
                                             "5.6.0.0", "5.7.0.0", "5.8.0.0", "5.9.0.0"};
    // With 7.0.0.0 for 5.1.0.0, the first number would become 5.7.0.0.0.0.
    std::string text = "5.5.1.0.0.0 5.5.2.0.0.0";
    for (const std::string& original : originals) {
        text += " " + original;
    }
    for (int run = 0; run < 20; ++run) {
        writeText(text);
        EXPECT_EQ(notesOf(cleanRequest()), "");
        for (const std::string& original : originals) {
            EXPECT_THAT(cleaned(), Not(HasSubstr(original)));
        }
        std::filesystem::remove(path("out.tgz.map"));
    }
}

TEST_F(CleanerTest, FindsALeakInACleanPackage) {
    const Report::Mapping mapping = Report::parseMapping(
        "korvel-report map 1\nip4 10.0.0.1 17.4.6.2\nip4 17.4.6.2 19.3.3.8\nmac 40:11:22:33:44:5f "
        "40:03:91:18:72:6a\n"
        "name bob dqz\n");
    const struct {
        std::string text;
        std::string leak;
    } cases[] = {
        {"17.4.6.2 19.3.3.8 dqz bobcat 40112233445e", "none"},
        {"::ffff:10.0.0.1", "::ffff:10.0.0.1"},
        {"40112233445F", "40112233445F"},
        {"x BOB", "BOB"},
    };
    for (const auto& [text, leak] : cases) {
        std::string rest = text;
        Report::LeakFinder finder(mapping);
        static_cast<void>(Report::handleTokens(rest, finder));
        EXPECT_EQ(finder.leak().value_or("none"), leak);
    }
}

}  // namespace
}  // namespace ReportTest

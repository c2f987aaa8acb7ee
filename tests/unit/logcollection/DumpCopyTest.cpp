// The copy of a dump. It is repeated as the source grows, and failures are reported after the last try.

#include <chrono>
#include <filesystem>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "DumpCopy.hpp"
#include "Printed.hpp"
#include "TestFiles.hpp"

namespace fs = std::filesystem;
using Korvel::DumpCopy;
using Korvel::ReadingRules;

namespace {

class DumpCopyTest : public testing::Test {
protected:
    static constexpr const char* source = "/tmp/dump/source";
    static constexpr const char* destination = "/tmp/copies/destination";

    DumpCopyTest() {
        fs::remove_all("/tmp/dump");
        fs::remove_all("/tmp/copies");
        fs::create_directories("/tmp/dump");
        fs::create_directories("/tmp/copies");
    }

    static DumpCopy copyOfSource(const ReadingRules& rules = {},
                                 DumpCopy::Directory directory = DumpCopy::Directory::required) {
        return {source, destination, rules, directory};
    }

    /// Finishes a copy that keeps its source. Returns the report.
    static std::string reasonToStay(const DumpCopy& copy) {
        bool settled = true;
        const Printed printed = printedBy([&] { settled = copy.reportResult(); });
        EXPECT_FALSE(settled);
        EXPECT_EQ(printed.out, "");
        return printed.err;
    }

    /// Finishes a copy that no longer needs its source. It must report nothing.
    static void expectDone(const DumpCopy& copy) {
        bool settled = false;
        EXPECT_EQ(printedBy([&] { settled = copy.reportResult(); }), Printed{});
        EXPECT_TRUE(settled);
    }

    static fs::file_time_type longAgo() {
        return fs::file_time_type::clock::now() - std::chrono::hours(24 * 365);
    }

    std::string text = "earlier";
};

TEST_F(DumpCopyTest, HasEveryByteOfItsSource) {
    const std::string content("a zero \0, and no line end", 25);
    writeFile(source, content);
    writeFile(destination, "an earlier copy that is longer than its source");
    DumpCopy copy = copyOfSource();

    EXPECT_TRUE(copy.take(text));

    EXPECT_EQ(text, content);
    EXPECT_EQ(contentOfFile(destination), content);
    expectDone(copy);
}

TEST_F(DumpCopyTest, IsRepeatedAsTheSourceGrows) {
    writeFile(source, "begun");
    DumpCopy copy = copyOfSource();
    EXPECT_TRUE(copy.take(text));
    writeFile(source, "begun and ended");

    EXPECT_TRUE(copy.take(text));

    EXPECT_EQ(text, "begun and ended");
    EXPECT_EQ(contentOfFile(destination), "begun and ended");
}

TEST_F(DumpCopyTest, IsNotMadeOfAMissingSource) {
    DumpCopy copy = copyOfSource();

    EXPECT_FALSE(copy.take(text));

    EXPECT_EQ(text, "earlier");
    EXPECT_FALSE(fs::exists(destination));
    EXPECT_FALSE(copy.wasTaken());
    expectDone(copy);
}

TEST_F(DumpCopyTest, ReportsADirectoryInItsPlaceAndStillHasTheText) {
    writeFile(source, "content");
    fs::create_directory(destination);
    DumpCopy copy = copyOfSource();

    EXPECT_FALSE(copy.take(text));

    EXPECT_EQ(text, "content");
    EXPECT_EQ(reasonToStay(copy), "Error while writing /tmp/copies/destination: Is a directory\n");
}

TEST_F(DumpCopyTest, ReportsAMissingFolderAndStillHasTheText) {
    writeFile(source, "content");
    fs::remove("/tmp/copies");
    DumpCopy copy = copyOfSource();

    EXPECT_FALSE(copy.take(text));

    EXPECT_EQ(text, "content");
    EXPECT_EQ(reasonToStay(copy), "Error while writing /tmp/copies/destination: No such file or directory\n");
}

TEST_F(DumpCopyTest, SilentlyHasNoTextIfItsFolderWasRemovedOnPurpose) {
    writeFile(source, "content");
    fs::remove("/tmp/copies");
    DumpCopy copy = copyOfSource({}, DumpCopy::Directory::mayBeMissing);

    EXPECT_FALSE(copy.take(text));

    EXPECT_EQ(text, "");
    expectDone(copy);
}

TEST_F(DumpCopyTest, ReportsOtherFailuresIfItsFolderWasRemovedOnPurpose) {
    writeFile(source, "content");
    fs::create_directory(destination);
    DumpCopy copy = copyOfSource({}, DumpCopy::Directory::mayBeMissing);

    EXPECT_FALSE(copy.take(text));

    EXPECT_EQ(text, "content");
    EXPECT_EQ(reasonToStay(copy), "Error while writing /tmp/copies/destination: Is a directory\n");
}

TEST_F(DumpCopyTest, ReportsAFullDiskAndStillHasTheText) {
    writeFile(source, "content");
    fs::create_symlink("/dev/full", destination);
    DumpCopy copy = copyOfSource();

    EXPECT_FALSE(copy.take(text));

    EXPECT_EQ(text, "content");
    EXPECT_EQ(reasonToStay(copy), "Error while writing /tmp/copies/destination: No space left on device\n");
}

TEST_F(DumpCopyTest, DropsAFailureAfterASuccessfulRetry) {
    writeFile(source, "content");
    fs::create_directory(destination);
    DumpCopy copy = copyOfSource();
    EXPECT_FALSE(copy.take(text));
    fs::remove(destination);

    EXPECT_TRUE(copy.take(text));

    expectDone(copy);
}

TEST_F(DumpCopyTest, ReportsAFailureIfTheSourceIsGone) {
    writeFile(source, "content");
    fs::create_directory(destination);
    DumpCopy copy = copyOfSource();
    EXPECT_FALSE(copy.take(text));
    fs::remove(source);

    EXPECT_FALSE(copy.take(text));

    EXPECT_EQ(text, "content");
    EXPECT_EQ(reasonToStay(copy), "Error while writing /tmp/copies/destination: Is a directory\n");
}

TEST_F(DumpCopyTest, ReportsASourceThatCannotBeRead) {
    const struct {
        void (*make)();
        std::string reason;
    } cases[] = {
        {[] { fs::create_directory(source); }, "Is a directory"},
        {[] { ASSERT_EQ(::mkfifo(source, 0600), 0); }, "No such device or address"},
        {[] {
             writeFile(source, "");
             fs::permissions(source, fs::perms::none);
         },
         "Permission denied"},
    };
    for (const auto& [make, reason] : cases) {
        SCOPED_TRACE(reason);
        make();
        DumpCopy copy = copyOfSource();

        EXPECT_FALSE(copy.take(text));

        EXPECT_EQ(text, "earlier");
        EXPECT_FALSE(fs::exists(destination));
        EXPECT_EQ(reasonToStay(copy), "Error while reading /tmp/dump/source: " + reason + "\n");
        fs::remove(source);
    }
}

TEST_F(DumpCopyTest, ReportsThatItIsCutAndKeepsTheSource) {
    writeFile(source, "12345");
    DumpCopy copy = copyOfSource({.sizeLimit = 4});

    EXPECT_TRUE(copy.take(text));

    EXPECT_EQ(text, "1234");
    EXPECT_EQ(contentOfFile(destination), "1234");
    EXPECT_EQ(reasonToStay(copy), "/tmp/dump/source is larger than 4 bytes, cut\n");
}

TEST_F(DumpCopyTest, DetectsEveryKindOfChangeOfTheSource) {
    const struct {
        std::string way;
        void (*change)();
    } cases[] = {
        {"grown", [] { writeFile(source, "earlier and more"); }},
        {"of other times", [] { writeFile(source, "another"); }},
        {"renamed over",
         [] {
             writeFile("/tmp/dump/new", "earlier");
             fs::last_write_time("/tmp/dump/new", fs::last_write_time(source));
             fs::rename("/tmp/dump/new", source);
         }},
        {"with the times of the earlier one",
         [] {
             const auto before = fs::last_write_time(source);
             writeFile(source, "another");
             fs::last_write_time(source, before);
         }},
    };
    for (const auto& [way, change] : cases) {
        SCOPED_TRACE(way);
        writeFile(source, "earlier");
        fs::last_write_time(source, longAgo());
        DumpCopy copy = copyOfSource();
        EXPECT_FALSE(copy.hasSourceChanged());

        change();

        EXPECT_TRUE(copy.hasSourceChanged());
    }
}

TEST_F(DumpCopyTest, DetectsThatASourceAppearsAndDisappears) {
    DumpCopy copy = copyOfSource();
    EXPECT_FALSE(copy.hasSourceChanged());

    writeFile(source, "new");
    EXPECT_TRUE(copy.hasSourceChanged());

    fs::remove(source);
    EXPECT_FALSE(copy.hasSourceChanged());
}

TEST_F(DumpCopyTest, KeepsTheTimesOfASourceThatHasNotChanged) {
    writeFile(source, "stale");
    fs::last_write_time(source, longAgo());
    DumpCopy copy = copyOfSource();

    EXPECT_TRUE(copy.take(text));

    EXPECT_EQ(fs::last_write_time(destination), fs::last_write_time(source));
}

TEST_F(DumpCopyTest, HasItsOwnTimesIfTheSourceHasChanged) {
    writeFile(source, "stale");
    fs::last_write_time(source, longAgo());
    DumpCopy copy = copyOfSource();
    writeFile(source, "fresh");
    fs::last_write_time(source, longAgo());

    EXPECT_TRUE(copy.take(text));

    EXPECT_GT(fs::last_write_time(destination), longAgo() + std::chrono::hours(1));
}

}  // namespace

#include <clocale>
#include <stdexcept>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>

#include "PackageBuilder.hpp"
#include "ReadOutcome.hpp"

using namespace ReportTest;
using Report::Limit;

namespace {

constexpr std::size_t kibi = 1024;

/// What lies between the braces of the outermost tar archive, without indentation of these layers.
std::string membersOf(const ReadOutcome& outcome) {
    constexpr std::string_view before = "gzip {\n  tar {\n";
    constexpr std::string_view after = "  }\n}\n";
    EXPECT_TRUE(outcome.events.starts_with(before) && outcome.events.ends_with(after)) << outcome.events;
    EXPECT_EQ(outcome.end, "");
    std::string members;
    std::string_view rest = std::string_view(outcome.events).substr(before.size());
    rest.remove_suffix(after.size());
    while (!rest.empty()) {
        const std::size_t length = rest.find('\n') + 1;
        members += rest.starts_with("    ") ? rest.substr(4, length - 4) : rest.substr(0, length);
        rest.remove_prefix(length);
    }
    return members;
}

/// The headers that a package holds.
class HeaderRecorder : public EventRecorder {
public:
    void beginMember(const Report::MemberHeader& header) override {
        headers.push_back(header);
        EventRecorder::beginMember(header);
    }

    std::vector<Report::MemberHeader> headers;
};

std::vector<Report::MemberHeader> headersOf(const std::string& package) {
    MemorySource source(package);
    Report::Budget budget({});
    HeaderRecorder recorder;
    EXPECT_EQ(describe(readPackage(source, budget, recorder).end), "");
    return recorder.headers;
}

TEST(PackageReaderTest, ReportsMembersInTheirOrderWithTheirContents) {
    const ReadOutcome outcome =
        readBytes(PackageBuilder().directory("./fuse/").file("./fuse/a.log", "hello").file("./b", "").tgz());

    EXPECT_EQ(outcome.events, R"(gzip {
  tar {
    directory ./fuse/
    end
    file ./fuse/a.log 5
      "hello"
    end
    file ./b 0
    end
  }
}
)");
    EXPECT_EQ(outcome.end, "");
}

TEST(PackageReaderTest, ReportsLinksDevicesAndHostileNamesAsHeadersOnly) {
    const std::string package = PackageBuilder()
                                    .symbolicLink("./link", "/etc/passwd")
                                    .hardLink("./hard", "../../etc/shadow")
                                    .special("./character", '3')
                                    .special("./block", '4')
                                    .special("./fifo", '6')
                                    .file("/absolute", "a")
                                    .file("../../up", "b")
                                    .file("twice", "c")
                                    .file("twice", "d")
                                    .file("", "e")
                                    .tgz();

    EXPECT_EQ(membersOf(readBytes(package)), R"(link ./link -> /etc/passwd
end
hard link ./hard -> ../../etc/shadow
end
device ./character
end
device ./block
end
fifo ./fifo
end
file /absolute 1
  "a"
end
file ../../up 1
  "b"
end
file twice 1
  "c"
end
file twice 1
  "d"
end
file  1
  "e"
end
)");
}

TEST(PackageReaderTest, ReportsWhatAHeaderHolds) {
    TarFields fields{.name = "./a", .time = 1795336233, .mode = 04750, .uid = 1000, .gid = 100};
    fields.owner = "alice";
    fields.group = "users";
    const auto headers = headersOf(
        PackageBuilder().raw(tarHeader(fields)).pax(paxRecord("mtime", "1795336233.25")).file("b", "").tgz());

    ASSERT_EQ(headers.size(), 2U);
    EXPECT_EQ(headers[0].mode, 04750U);
    EXPECT_EQ(headers[0].uid, 1000U);
    EXPECT_EQ(headers[0].gid, 100U);
    EXPECT_EQ(headers[0].owner, "alice");
    EXPECT_EQ(headers[0].group, "users");
    EXPECT_EQ(headers[0].time.tv_sec, 1795336233);
    EXPECT_EQ(headers[0].time.tv_nsec, 0);
    EXPECT_EQ(headers[1].time.tv_nsec, 250'000'000);
}

TEST(PackageReaderTest, KeepsTheBytesOfLongAndForeignNamesInEveryLocale) {
    const std::string longName = "./" + std::string(300, 'n');
    const std::string names[] = {longName, "caf\xc3\xa9", "cafe\xcc\x81", "latin1-\xe9", longName + "\xff"};
    for (const char* locale : {"C", "C.UTF-8"}) {
        ASSERT_TRUE(std::setlocale(LC_ALL, locale));
        for (const std::string& name : names) {
            const auto headers = headersOf(PackageBuilder()
                                               .file(name, "")
                                               .symbolicLink("link", name)
                                               .pax(paxRecord("path", name) + paxRecord("uname", name))
                                               .file("short", "")
                                               .tgz());
            ASSERT_EQ(headers.size(), 3U);
            EXPECT_EQ(headers[0].name, name) << locale;
            EXPECT_EQ(headers[1].target, name) << locale;
            EXPECT_EQ(headers[2].name, name) << locale;
            EXPECT_EQ(headers[2].owner, name) << locale;
        }
    }
    std::setlocale(LC_ALL, "C");
}

TEST(PackageReaderTest, FillsTheHolesOfSparseFilesWithZeros) {
    const std::string map = paxRecord("GNU.sparse.size", "12") + paxRecord("GNU.sparse.numblocks", "2");
    const std::string package = PackageBuilder()
                                    .pax(map + paxRecord("GNU.sparse.map", "2,3,8,2"))
                                    .file("sparse", "abcde")
                                    .file("after", "x")
                                    .tgz();

    EXPECT_EQ(
        membersOf(readBytes(package)),
        std::string("file sparse 12\n  \"\0\0abc\0\0\0de\0\0\"\nend\n", 36) + "file after 1\n  \"x\"\nend\n");
}

TEST(PackageReaderTest, OpensGzipInsideAMemberWhateverItsName) {
    const std::string nested = PackageBuilder().file("./x.gz", gzip("piece")).tgz();
    const std::string package = PackageBuilder()
                                    .file("./no-ending", nested)
                                    .file("./a.log", gzip(gzip("twice")))
                                    .file("./b.gz", "no gzip")
                                    .tgz();

    EXPECT_EQ(membersOf(readBytes(package)), "file ./no-ending " + std::to_string(nested.size()) + R"(
  gzip {
    tar {
      file ./x.gz 25
        gzip {
          "piece"
        }
      end
    }
  }
end
file ./a.log 40
  gzip {
    gzip {
      "twice"
    }
  }
end
file ./b.gz 7
  "no gzip"
end
)");
}

TEST(PackageReaderTest, ADamagedPieceInsideAMemberLeavesThePackageWhole) {
    std::string differing = gzip("piece");
    differing.back() = '\x01';
    const std::string package =
        PackageBuilder()
            .file("cut", gzip("piece").substr(0, 20))
            .file("differs", differing)
            .file("appended", gzip("piece") + "more")
            .file("magic", "\x1f\x8b\x08 is no gzip")
            .file("nested", gzip(PackageBuilder().file("x", "1").tar().substr(0, 1024)))
            .tgz();

    EXPECT_EQ(membersOf(readBytes(package)), R"(file cut 20
  gzip {
    "piece"
  } cut: the compressed data end early
end
file differs 25
  gzip {
    "piece"
  } altered: the compressed data are damaged: incorrect length check
end
file appended 29
  gzip {
    "piece"
  } altered: other data follow the compressed data
end
file magic 14
  gzip {
  } altered: the compressed data are damaged: unknown header flags set
end
file nested 87
  gzip {
    tar {
      file x 1
        "1"
      end
    } cut: the tar archive has no complete end mark
  }
end
)");
}

TEST(PackageReaderTest, TellsHowAPackageEnds) {
    const std::string members = PackageBuilder().file("x", "1").tar().substr(0, kibi);
    const std::string package = gzip(members + tarEndMark());
    const std::string zeroBlock(512, '\0');
    const std::string zeros(20 * kibi, '\0');
    const struct {
        std::string_view what;
        std::string package;
        std::string_view end;
    } cases[] = {
        {"as tar writes it", gzip(members + tarEndMark() + zeros), ""},
        {"zeros behind the trailer", package + zeros, ""},
        {"no members", gzip(zeros), ""},
        {"an empty file", "", "cut: the file is empty"},
        {"one byte", "\x1f", "cut: the compressed data end early"},
        {"an empty archive", gzip(""), "cut: the tar archive has no complete end mark"},
        {"no end mark", gzip(members), "cut: the tar archive has no complete end mark"},
        {"a lone block of zeros", gzip(members + zeroBlock), "cut: the tar archive has no complete end mark"},
        {"less than a block", gzip(members + "x"), "cut: the tar archive ends inside a member"},
        {"no padding", gzip(members.substr(0, 513)), "cut: the tar archive ends inside a member"},
        {"data behind the end mark", gzip(members + tarEndMark() + zeros + "x"),
         "altered: other data follow the end of the tar archive"},
        {"data in the end mark", gzip(members + zeroBlock + members),
         "altered: other data follow the end of the tar archive"},
        {"data behind the trailer", package + zeros + "x", "altered: other data follow the compressed data"},
        {"a second gzip member", package + package, "altered: other data follow the compressed data"},
        {"no gzip", members + tarEndMark(), "altered: the file is not compressed by gzip"},
        {"another byte", "x", "altered: the file is not compressed by gzip"},
        {"no tar", gzip("hello"), "altered: the compressed data are no tar archive"},
        {"gzip of gzip", gzip(package), "altered: the compressed data are no tar archive"},
    };
    for (const auto& [what, bytes, end] : cases) {
        EXPECT_EQ(readBytes(bytes).end, end) << what;
    }
}

TEST(PackageReaderTest, TheChecksumIsThatOfTheWholeFileEvenIfItIsDamaged) {
    const std::string zeros(300 * kibi, '\0');

    const Report::PackageFacts facts = readBytes("not a package" + zeros).facts;

    EXPECT_EQ(facts.size, 13 + zeros.size());
    // (printf "not a package"; head -c 307200 /dev/zero) | sha256sum
    EXPECT_EQ(facts.sha256, "9ddb70da45523bae909967ad79f8282a44e50372eda7c96d318997aeeaa69a00");
}

TEST(PackageReaderTest, RefusesHeadersThatDoNotFitTheirArchive) {
    const auto sparse = [](std::string_view map) {
        return PackageBuilder()
            .pax(paxRecord("GNU.sparse.size", "12") + paxRecord("GNU.sparse.map", map))
            .file("sparse", "abcde")
            .tgz();
    };
    const std::string damaged = "altered: the tar archive is damaged: ";
    const std::string wrongMap = damaged + "the map of a sparse file is wrong";
    EXPECT_EQ(readBytes(sparse("8,3,2,2")).end, wrongMap);
    EXPECT_EQ(readBytes(sparse("2,3,11,2")).end, wrongMap);
    EXPECT_EQ(readBytes(PackageBuilder().pax("no record").file("x", "").tgz()).end,
              damaged + "Ignoring malformed pax extended attributes");
    EXPECT_EQ(
        readBytes(PackageBuilder().raw(tarHeader({.type = 'x', .size = std::size_t{1} << 30})).tgz()).end,
        damaged + "Special header too large");
    EXPECT_EQ(readBytes(PackageBuilder().pax(paxRecord("size", "-1")).file("x", "").tgz()).end,
              damaged + "Tar size attribute is negative");
}

class BrokenSource : public Report::ByteSource {
public:
    explicit BrokenSource(std::string content) : bytes(std::move(content)) {}

    std::size_t read(std::span<char> buffer) override {
        if (bytes.empty()) {
            throw std::system_error(EIO, std::generic_category(), "package");
        }
        const std::size_t count = bytes.copy(buffer.data(), 100);
        bytes.erase(0, count);
        return count;
    }

private:
    std::string bytes;
};

TEST(PackageReaderTest, PassesOnWhyTheFileCannotBeRead) {
    std::string incompressible;
    for (unsigned number = 1; incompressible.size() < 200 * kibi; number = number * 1664525 + 1013904223) {
        incompressible += static_cast<char>(number >> 24U);
    }
    BrokenSource source(PackageBuilder().file("x", incompressible).tgz().substr(0, 180 * kibi));
    Report::Budget budget({});
    EventRecorder recorder;

    EXPECT_THROW(static_cast<void>(readPackage(source, budget, recorder)), std::system_error);
}

}  // namespace

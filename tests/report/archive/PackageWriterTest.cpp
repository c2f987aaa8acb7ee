#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include "PackageBuilder.hpp"
#include "PackageWriter.hpp"
#include "ReadOutcome.hpp"

using namespace ReportTest;
using Report::MemberHeader;
using Report::MemberType;
using Report::PackageWriter;
using testing::HasSubstr;

namespace {

class StringSink : public Report::ByteSink {
public:
    void write(std::string_view bytes) override { content += bytes; }

    std::string content;
};

/// Passes a package on to a writer, and keeps the headers.
class Copier : public Report::PackageVisitor {
public:
    explicit Copier(PackageWriter& target) : writer(target) {}

    void enterGzip() override { writer.enterGzip(); }
    void leaveGzip(const Report::LayerEnd& /*end*/) override { writer.leaveGzip(); }
    void enterTar() override { writer.enterTar(); }
    void leaveTar(const Report::LayerEnd& /*end*/) override { writer.leaveTar(); }
    void beginMember(const MemberHeader& header) override {
        headers.push_back(header);
        writer.beginMember(header);
    }
    void data(std::string_view bytes) override { writer.data(bytes); }
    void endMember(const Report::LayerEnd& /*end*/) override { writer.endMember(); }

    std::vector<MemberHeader> headers;

private:
    PackageWriter& writer;
};

struct Copy {
    std::string package;
    std::vector<MemberHeader> headers;
};

Copy copyOf(const std::string& package) {
    MemorySource source(package);
    Report::Budget budget({});
    StringSink sink;
    PackageWriter writer(sink, budget);
    Copier copier(writer);
    EXPECT_EQ(describe(readPackage(source, budget, copier).end), "");
    return {sink.content, copier.headers};
}

MemberHeader header(const std::string& name, MemberType type, std::uint64_t size = 0) {
    MemberHeader result;
    result.name = name;
    result.type = type;
    result.size = size;
    return result;
}

auto fieldsOf(const MemberHeader& of) {
    return std::tuple(of.name, of.type, of.time.tv_sec, of.time.tv_nsec, of.mode, of.uid, of.gid, of.owner,
                      of.group, of.target);
}

/// What GNU tar lists of a package.
std::string listing(const std::string& package) {
    std::string path = testing::TempDir() + "korvel-report-XXXXXX";
    ::close(::mkstemp(path.data()));
    std::ofstream(path) << package;
    const std::string command = "TZ=UTC LC_ALL=C.UTF-8 tar --full-time -tvzf " + path + " 2>&1";
    const std::unique_ptr<FILE, decltype(&::pclose)> pipe(::popen(command.c_str(), "re"), ::pclose);
    std::string text;
    std::array<char, 4096> buffer{};
    while (const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), pipe.get())) {
        text.append(buffer.data(), count);
    }
    ::unlink(path.c_str());
    return text;
}

std::string packageOfAllKinds() {
    const std::string longName = "./" + std::string(200, 'n') + "/x";
    TarFields large{.name = "./large-numbers", .mode = 07777, .uid = 2097151, .gid = 2097151};
    return PackageBuilder()
        .directory("./")
        .ownedBy("alice", "users")
        .file("./fuse/HistoryLog.log", "hello\n")
        .file("./exactly-a-block", std::string(512, 'b'))
        .file("./empty", "")
        .file(std::string(100, 'h'), "a name of 100 bytes")
        .file(longName, "a long name")
        .file("./caf\xc3\xa9-\xff", "bytes")
        .symbolicLink("./link", longName)
        .hardLink("./hard", "./empty")
        .special("./fifo", '6')
        .raw(tarHeader(large))
        .pax(paxRecord("mtime", "1795336233.123456789") + paxRecord("uname", std::string(40, 'u')) +
             paxRecord("gname", std::string(32, 'g')) + paxRecord("uid", "4000000000"))
        .file("./pax", "p")
        .pax(paxRecord("mtime", "-5"))
        .file("./before-1970", "")
        .file("./piece.gz", gzip("piece"))
        .file("./twice.gz", gzip(gzip("twice")))
        .file("./nested.tgz", PackageBuilder().file("./piece.gz", gzip(std::string(300'000, 'x'))).tgz())
        .tgz();
}

TEST(PackageWriterTest, WhatTheReaderReportsComesBackUnchanged) {
    const std::string package = packageOfAllKinds();

    const Copy first = copyOf(package);
    const Copy second = copyOf(first.package);

    ASSERT_EQ(first.headers.size(), second.headers.size());
    for (std::size_t index = 0; index < first.headers.size(); ++index) {
        EXPECT_EQ(fieldsOf(first.headers[index]), fieldsOf(second.headers[index]));
    }
    EXPECT_EQ(readBytes(first.package).events, readBytes(package).events);
    EXPECT_EQ(second.package, first.package);
}

TEST(PackageWriterTest, GnuTarListsTheCopyLikeTheOriginal) {
    const std::string package = packageOfAllKinds();
    const std::string original = listing(package);

    EXPECT_THAT(original, HasSubstr("2026-11-22 08:30:33.123456789 ./pax")) << original;
    EXPECT_EQ(listing(copyOf(package).package), original);
}

TEST(PackageWriterTest, RefusesCallsThatAreNoPackage) {
    const auto refuses = [](auto calls) {
        StringSink sink;
        Report::Budget budget({});
        PackageWriter writer(sink, budget);
        EXPECT_THROW(calls(writer), std::logic_error);
    };
    refuses([](PackageWriter& writer) { writer.enterTar(); });
    refuses([](PackageWriter& writer) { writer.leaveGzip(); });
    refuses([](PackageWriter& writer) { writer.data("x"); });
    const auto openTar = [](PackageWriter& writer) {
        writer.enterGzip();
        writer.enterTar();
    };
    refuses([&](PackageWriter& writer) { openTar(writer), writer.enterGzip(); });
    refuses([&](PackageWriter& writer) { openTar(writer), writer.leaveGzip(); });
    refuses([&](PackageWriter& writer) { openTar(writer), writer.data("x"); });
    refuses([&](PackageWriter& writer) {
        openTar(writer), writer.beginMember(header("device", MemberType::device)), writer.endMember();
    });
    for (const std::string_view contents : {"", "12", "1234"}) {
        refuses([&](PackageWriter& writer) {
            openTar(writer), writer.beginMember(header("a", MemberType::file, 3)), writer.data(contents),
                writer.endMember();
        });
    }
}

TEST(PackageWriterTest, TheMemoryLimitBoundsWhatIsCompressedInsideAMember) {
    StringSink sink;
    Report::Budget budget({.maxMemory = 20});
    PackageWriter writer(sink, budget);
    writer.enterGzip();
    writer.enterTar();
    writer.beginMember(header("piece.gz", MemberType::file));
    writer.enterGzip();
    writer.data("piece");

    EXPECT_THROW(writer.leaveGzip(), std::length_error);
}

}  // namespace

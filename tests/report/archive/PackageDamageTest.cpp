#include <string>

#include <gtest/gtest.h>

#include "PackageBuilder.hpp"
#include "ReadOutcome.hpp"

using namespace ReportTest;
using Report::Integrity;

namespace {

constexpr std::size_t trailerSize = 8;
constexpr std::size_t tarBlock = 512;

/// A package with everything that packages have: folders, an empty member, a piece and a nested package.
std::string smallPackageTar() {
    return PackageBuilder()
        .directory("./")
        .file("./mmi/sfn/HeapStats.log", "heap\n  in use     17\n")
        .file("./mmi/iwf/HeapStats.log", "")
        .file("./archive/iwf/startup.log.gz", gzip("08:30:33 2 start: ready\n"))
        .file("./netfp_logs_post_mortem.tgz", PackageBuilder().file("./ti/netfp_proxy.log", "dump\n").tgz())
        .tar();
}

std::string flipped(std::string bytes, std::size_t offset, unsigned mask) {
    bytes[offset] = static_cast<char>(static_cast<unsigned char>(bytes[offset]) ^ mask);
    return bytes;
}

TEST(PackageDamageTest, APackageThatEndsAtAnyByteIsCut) {
    const std::string package = gzip(smallPackageTar());
    ASSERT_EQ(readBytes(package).end, "");
    for (std::size_t size = 0; size < package.size(); ++size) {
        EXPECT_EQ(readBytes(package.substr(0, size)).facts.end.integrity, Integrity::cut) << size;
    }
}

TEST(PackageDamageTest, ATarArchiveThatEndsAtAnyByteIsNotWhole) {
    const std::string tar = smallPackageTar();
    for (std::size_t size = 0; size < tar.size(); ++size) {
        const auto integrity = readBytes(gzip(tar.substr(0, size), 1)).facts.end.integrity;
        // Nothing shows that a part of the first header is tar.
        const bool unrecognizable = size > 0 && size < tarBlock;
        EXPECT_TRUE(integrity == Integrity::cut || (unrecognizable && integrity == Integrity::altered))
            << size;
    }
}

TEST(PackageDamageTest, EachBitOfTheGzipTrailerCounts) {
    const std::string package = gzip(smallPackageTar());
    for (std::size_t offset = package.size() - trailerSize; offset < package.size(); ++offset) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            EXPECT_EQ(readBytes(flipped(package, offset, 1U << bit)).facts.end.integrity, Integrity::altered)
                << offset << " " << bit;
        }
    }
}

TEST(PackageDamageTest, AnyBitOfTheFileCountsUnlessItChangesNothing) {
    const std::string package = gzip(PackageBuilder().file("a", "hello").tar());
    const std::string events = readBytes(package).events;
    std::size_t whole = 0;
    for (std::size_t offset = 0; offset < package.size(); ++offset) {
        for (unsigned bit = 0; bit < 8; ++bit) {
            const ReadOutcome outcome = readBytes(flipped(package, offset, 1U << bit));
            if (outcome.end.empty()) {
                // Such as the time in the gzip header, or the distance to other zeros.
                EXPECT_EQ(outcome.events, events) << offset << " " << bit;
                ++whole;
            }
        }
    }
    EXPECT_LT(whole, package.size());
}

TEST(PackageDamageTest, EachByteOfAHeaderCounts) {
    const std::string tar = smallPackageTar();
    const ReadOutcome undamaged = readBytes(gzip(tar));
    std::size_t unnoticed = 0;
    for (std::size_t header = 0; header < 6 * tarBlock; ++header) {
        const bool isHeader = tar.substr(header / tarBlock * tarBlock + 257).starts_with("ustar");
        for (const unsigned mask : {0x01U, 0x10U, 0x80U, 0xffU}) {
            const ReadOutcome outcome = isHeader ? readBytes(gzip(flipped(tar, header, mask), 1)) : undamaged;
            if (isHeader && outcome.end.empty()) {
                // The checksum cannot cover the bytes around its own digits.
                EXPECT_TRUE(header % tarBlock >= 148 && header % tarBlock < 156) << header << " " << mask;
                EXPECT_EQ(outcome.events, undamaged.events) << header << " " << mask;
                ++unnoticed;
            }
        }
    }
    EXPECT_LE(unnoticed, 12U);
}

}  // namespace

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "PackageBuilder.hpp"
#include "ReadOutcome.hpp"

using namespace ReportTest;
using Report::Integrity;
using Report::Limit;
using Report::Limits;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr std::size_t mebi = std::size_t{1} << 20;

std::string notRead(Limit limit) {
    return "not read: the limit " + std::string(optionOf(limit)) + " was reached";
}

/// A package in a package, `depth` packages in all.
std::string nestedPackage(std::size_t depth) {
    std::string package = PackageBuilder().file("innermost", "x").tgz();
    while (--depth > 0) {
        package = PackageBuilder().file("nested", package).tgz();
    }
    return package;
}

TEST(PackageLimitsTest, EachLimitIsNamedByItsOption) {
    const struct {
        Limit limit;
        std::string_view option;
    } cases[] = {
        {Limit::bytes, "--max-bytes"},   {Limit::members, "--max-members"}, {Limit::line, "--max-line"},
        {Limit::name, "--max-name"},     {Limit::depth, "--max-depth"},     {Limit::seconds, "--max-seconds"},
        {Limit::memory, "--max-memory"},
    };
    for (const auto& [limit, option] : cases) {
        EXPECT_EQ(optionOf(limit), option);
    }
}

TEST(PackageLimitsTest, ReadsUpToTheLimitOfInflatedBytes) {
    const std::string tar = PackageBuilder().file("a", std::string(1000, 'a')).file("b", "b").tar();
    const std::string package = gzip(tar);

    EXPECT_EQ(readBytes(package, {.maxBytes = tar.size()}).end, "");
    const ReadOutcome outcome = readBytes(package, {.maxBytes = tar.size() - 1});
    EXPECT_EQ(outcome.end, notRead(Limit::bytes));
    EXPECT_THAT(outcome.events, HasSubstr("file b 1\n      \"b\"\n    end\n"));
    EXPECT_EQ(outcome.facts.size, package.size());
    EXPECT_EQ(outcome.facts.sha256.size(), 64U);
    for (std::size_t limit = 0; limit < tar.size(); ++limit) {
        EXPECT_EQ(readBytes(package, {.maxBytes = limit}).end, notRead(Limit::bytes)) << limit;
    }
}

TEST(PackageLimitsTest, BytesOfNestedLayersCountTogether) {
    const std::string inner = PackageBuilder().file("a", std::string(100'000, 'a')).tar();
    const std::string outer = PackageBuilder().file("n", gzip(inner)).tar();

    EXPECT_EQ(readBytes(gzip(outer), {.maxBytes = inner.size() + outer.size()}).end, "");
    EXPECT_EQ(readBytes(gzip(outer), {.maxBytes = inner.size() + outer.size() - 1}).end,
              notRead(Limit::bytes));
}

TEST(PackageLimitsTest, ABombEndsAtTheLimit) {
    const std::string zeros(64 * mebi, '\0');
    const Limits limits{.maxBytes = mebi};
    const std::string bombs[] = {
        PackageBuilder().file("zeros", zeros).tgz(),
        PackageBuilder().file("nested", gzip(zeros)).tgz(),
        gzip(zeros),
        PackageBuilder()
            .pax(paxRecord("GNU.sparse.size", "9000000000000000000") + paxRecord("GNU.sparse.map", "0,1"))
            .file("hole", "x")
            .tgz(),
    };
    for (const std::string& bomb : bombs) {
        EXPECT_EQ(readBytes(bomb, limits).end, notRead(Limit::bytes));
    }
}

TEST(PackageLimitsTest, ReadsNoMoreMembersThanTheLimit) {
    const std::string nested = PackageBuilder().file("b", "").file("c", "").tgz();
    const std::string package = PackageBuilder().file("a", "").file("n", nested).tgz();

    EXPECT_EQ(readBytes(package, {.maxMembers = 4}).end, "");
    const ReadOutcome outcome = readBytes(package, {.maxMembers = 3});
    EXPECT_EQ(outcome.end, notRead(Limit::members));
    EXPECT_EQ(outcome.events, "gzip {\n  tar {\n    file a 0\n    end\n    file n " +
                                  std::to_string(nested.size()) +
                                  R"(
      gzip {
        tar {
          file b 0
          end
        } not read: the limit --max-members was reached
      }
    end
  } not read: the limit --max-members was reached
}
)");
}

TEST(PackageLimitsTest, ALongNameIsCutAndItsMemberNotRead) {
    const std::string package = PackageBuilder()
                                    .file("12345678", "a")
                                    .file("123456789", std::string(5000, 'b'))
                                    .symbolicLink("link", "123456789")
                                    .file("after", "c")
                                    .tgz();

    const ReadOutcome outcome = readBytes(package, {.maxName = 8});

    EXPECT_EQ(outcome.end, "");
    EXPECT_EQ(outcome.events, R"(gzip {
  tar {
    file 12345678 1
      "a"
    end
    file 12345678 5000
    end not read: the limit --max-name was reached
    link link -> 12345678
    end not read: the limit --max-name was reached
    file after 1
      "c"
    end
  }
}
)");
}

TEST(PackageLimitsTest, HeadersThatAreTooLargeEndTheReading) {
    const std::string comment = paxRecord("comment", std::string(200'000, 'x'));
    const std::string package = PackageBuilder().pax(comment).file("a", "a").tgz();
    const std::string tooLarge = "not read: the headers of a member are too large";

    EXPECT_EQ(readBytes(package).end, tooLarge);
    EXPECT_EQ(readBytes(package).facts.end.limit, Limit::name);
    EXPECT_EQ(readBytes(package, {.maxName = 100'000}).end, "");

    std::string endless = tarHeader({.name = "sparse", .type = 'S'});
    endless.replace(386, 24,
                    "00000000001\0"
                    "00000000001\0",
                    24);
    endless[482] = '\1';  // the map goes on in the next block
    correctChecksum(endless);
    std::string block;
    for (int entry = 0; entry < 21; ++entry) {
        block += std::string(
            "00000000001\0"
            "00000000001\0",
            24);
    }
    block += std::string("\1\0\0\0\0\0\0\0", 8);
    for (int count = 0; count < 1000; ++count) {
        endless += block;
    }
    EXPECT_EQ(readBytes(PackageBuilder().raw(endless).tgz()).end, tooLarge);
}

TEST(PackageLimitsTest, HonestPackagesNestAsDeepAsTheLimit) {
    const Limits limits;
    EXPECT_THAT(readBytes(nestedPackage(8), limits).events, HasSubstr("file innermost 1"));
    const ReadOutcome outcome = readBytes(nestedPackage(9), limits);
    EXPECT_EQ(outcome.end, "");
    EXPECT_THAT(outcome.events, Not(HasSubstr("innermost")));
    EXPECT_THAT(outcome.events, HasSubstr("end " + notRead(Limit::depth)));
}

TEST(PackageLimitsTest, APieceCountsAsALevel) {
    const Limits limits{.maxDepth = 2};
    EXPECT_EQ(
        readBytes(PackageBuilder().file("a", gzip("x")).file("b", gzip(gzip("y"))).tgz(), limits).events,
        R"(gzip {
  tar {
    file a 21
      gzip {
        "x"
      }
    end
    file b 36
      gzip {
        gzip {
        } not read: the limit --max-depth was reached
      }
    end
  }
}
)");
    EXPECT_EQ(readBytes(nestedPackage(1), {.maxDepth = 0}).end, notRead(Limit::depth));
}

TEST(PackageLimitsTest, NothingIsReadAfterTheTimeIsUp) {
    const ReadOutcome outcome = readBytes(nestedPackage(1), {.maxTime = std::chrono::milliseconds{-1}});

    EXPECT_EQ(outcome.end, notRead(Limit::seconds));
    EXPECT_EQ(outcome.facts.sha256, "");
}

/// Keeps all data in memory, as far as the budget allows.
class Hoarder : public EventRecorder {
public:
    explicit Hoarder(Report::Budget& memory) : budget(memory) {}

    void data(std::string_view bytes) override {
        if (budget.keep(bytes.size())) {
            EventRecorder::data(bytes);
        }
    }

private:
    Report::Budget& budget;
};

TEST(PackageLimitsTest, TheMemoryOfTheVisitorIsALimitToo) {
    MemorySource source(PackageBuilder().file("a", "12345").file("b", "12345").file("c", "1").tgz());
    Report::Budget budget({.maxMemory = 11});
    Hoarder hoarder(budget);

    const Report::PackageFacts facts = readPackage(source, budget, hoarder);

    EXPECT_EQ(describe(facts.end), notRead(Limit::memory));
    EXPECT_EQ(hoarder.text(), R"(gzip {
  tar {
    file a 5
      "12345"
    end
    file b 5
    end not read: the limit --max-memory was reached
  } not read: the limit --max-memory was reached
}
)");
}

TEST(PackageLimitsTest, MemoryThatIsReleasedCanBeUsedAgain) {
    Report::Budget budget({.maxMemory = 11});
    EXPECT_EQ(budget.mostKept(), 9U);
    EXPECT_TRUE(budget.keep(8));
    budget.release(5);
    EXPECT_TRUE(budget.keep(5));
    EXPECT_FALSE(budget.keep(2));
    EXPECT_EQ(budget.reached(), Limit::memory);
}

TEST(PackageLimitsTest, DamageThatWasFoundBeforeALimitCounts) {
    std::string tar = PackageBuilder().file("a", "").tar();
    tar[0] = 'b';
    EXPECT_EQ(readBytes(gzip(tar + std::string(mebi, 'x')), {.maxBytes = mebi / 2}).end,
              "altered: the tar archive is damaged: Damaged tar archive");
}

}  // namespace

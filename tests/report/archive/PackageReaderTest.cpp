#include <gtest/gtest.h>

#include <string>

#include "EventRecorder.hpp"
#include "MemorySource.hpp"
#include "PackageBuilder.hpp"
#include "PackageReader.hpp"

using namespace ReportTest;
using Report::Integrity;
using Report::Limits;

namespace {

struct Outcome {
    std::string events;
    std::string end;  ///< of the package, empty if it is whole
    Report::PackageFacts facts;
};

Outcome readBytes(const std::string& package, const Limits& limits = {}) {
    MemorySource source(package);
    Report::Budget budget(limits);
    EventRecorder recorder;
    const Report::PackageFacts facts = readPackage(source, budget, recorder);
    return {recorder.text(), describe(facts.end), facts};
}

TEST(PackageReaderTest, ReportsMembersInTheirOrderWithTheirContents) {
    const Outcome outcome =
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

}  // namespace

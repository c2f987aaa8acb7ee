#pragma once

#include <string>

#include "EventRecorder.hpp"
#include "Limits.hpp"
#include "MemorySource.hpp"
#include "PackageReader.hpp"

namespace ReportTest {

/// What the reader found in a package.
struct ReadOutcome {
    std::string events;  ///< as EventRecorder writes them
    std::string end;     ///< of the package: "cut: reason"; empty if it is whole
    Report::PackageFacts facts;
};

inline ReadOutcome readBytes(const std::string& package, const Report::Limits& limits = {}) {
    MemorySource source(package);
    Report::Budget budget(limits);
    EventRecorder recorder;
    const Report::PackageFacts facts = readPackage(source, budget, recorder);
    return {recorder.text(), describe(facts.end), facts};
}

}  // namespace ReportTest

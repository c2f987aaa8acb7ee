// Members, logs, values and sidecars of packages, and what is wrong with them.

#include "FuzzPackage.hpp"
#include "FuzzTarget.hpp"
#include "Judge.hpp"

namespace {

using Fuzz::require;

// NOLINTNEXTLINE(misc-no-recursion): packages nest
void checkPackage(const Report::Package& package) {
    for (const Report::Part& part : package.parts) {
        require(!part.name.empty() || !part.member.empty(), "a part has a name");
        require((part.state == Report::State::present) == part.cause.empty(),
                "only what is wrong has a cause");
        require(part.cause.empty() || part.certainty.has_value(), "a cause has a certainty");
    }
    for (const Report::Package& nested : package.nested) {
        checkPackage(nested);
    }
}

// NOLINTNEXTLINE(misc-no-recursion): packages nest
void readEntries(const Report::Package& package) {
    for (const Report::Part& part : package.parts) {
        if (part.log) {
            forEachEntry(package, part, 1000, [](const Report::LogEntry&) { return true; });
        }
    }
    for (const Report::Package& nested : package.nested) {
        readEntries(nested);
    }
}

// NOLINTNEXTLINE(misc-no-recursion): packages nest
void compareJudgements(const Report::Package& one, const Report::Package& other) {
    require(one.verdict == other.verdict, "the verdict does not depend on what is kept");
    require(one.parts.size() == other.parts.size() && one.nested.size() == other.nested.size(),
            "the parts do not depend on what is kept");
    for (std::size_t index = 0; index < one.parts.size(); ++index) {
        require(one.parts[index].name == other.parts[index].name &&
                    one.parts[index].state == other.parts[index].state &&
                    one.parts[index].cause == other.parts[index].cause,
                "the states do not depend on what is kept");
    }
    for (std::size_t index = 0; index < one.nested.size(); ++index) {
        compareJudgements(one.nested[index], other.nested[index]);
    }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ReportFuzz::FuzzPackage description(Fuzz::textOf(data, size));
    Report::Package evidence = description.load(Report::Keep::evidence);
    Report::Package all = description.load(Report::Keep::all);
    judge(evidence, {});
    judge(all, {});
    checkPackage(all);
    readEntries(all);
    compareJudgements(evidence, all);
    return 0;
}

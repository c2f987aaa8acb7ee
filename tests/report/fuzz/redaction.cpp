// Redaction and its undoing. The section `map` is the mapping of an earlier package, `words` a list of words,
// `run` the sidecar.

#include <optional>
#include <stdexcept>
#include <string>

#include "Assignment.hpp"
#include "CleanRefusal.hpp"
#include "FuzzPackage.hpp"
#include "FuzzTarget.hpp"
#include "LeakCheck.hpp"
#include "MappingFile.hpp"
#include "MemorySource.hpp"
#include "OriginalsFinder.hpp"
#include "PackageGuard.hpp"
#include "PackageRewriter.hpp"
#include "ReadOutcome.hpp"
#include "SidecarText.hpp"
#include "SmallLimits.hpp"
#include "WordList.hpp"

namespace {

using Fuzz::require;
using ReportFuzz::FuzzPackage;

class StringSink : public Report::ByteSink {
public:
    void write(std::string_view bytes) override { content += bytes; }

    std::string content;
};

/// Reads a package as clean and restore do. Throws CleanRefusal.
void read(const std::string& package, Report::Budget& budget, Report::PackageVisitor& visitor) {
    ReportTest::MemorySource source(package);
    Report::PackageGuard guard("fuzz", budget, visitor);
    guard.checkEnd(readPackage(source, budget, guard));
}

std::string rewritten(const std::string& package, const Report::Replacements& replacements) {
    Report::Budget budget(ReportFuzz::smallLimits());
    StringSink sink;
    Report::PackageWriter writer(sink, budget);
    Report::PackageRewriter rewriter(replacements, writer);
    read(package, budget, rewriter);
    return sink.content;
}

/// The mapping of an earlier package, if there is one.
Report::Mapping earlierMapping(const FuzzPackage& description) {
    try {
        return Report::parseMapping(description.find("map").value_or("korvel-report map 1\n"));
    } catch (const std::invalid_argument&) {
        return {};
    }
}

void addWords(const FuzzPackage& description, Report::Originals& originals) {
    try {
        for (const Report::ListedWord& word : Report::parseWordList(description.find("words").value_or(""))) {
            originals.addName(word.name);
        }
    } catch (const std::invalid_argument&) {
        return;
    }
}

/// The text of the sidecar, if there is one.
std::optional<std::string> sidecarText(const FuzzPackage& description) {
    std::string error;
    const std::optional<std::string> text = description.find("run");
    return text && Report::parseSidecar(*text, error) ? text : std::nullopt;
}

void takeSidecar(const FuzzPackage& description, Report::OriginalsFinder& finder) {
    std::string error;
    if (const std::optional<std::string> text = sidecarText(description)) {
        finder.takeSidecar(*Report::parseSidecar(*text, error), *text);
    }
}

/// Whether no original is left in the clean sidecar, and restoring gives the original.
bool isSidecarClean(const FuzzPackage& description, const Report::Mapping& mapping) {
    const std::optional<std::string> text = sidecarText(description);
    if (!text) {
        return true;
    }
    Report::Rewriter rewriter(mapping.replacements());
    Report::LeakFinder leaks(mapping);
    const std::string restored = handleSidecar(handleSidecar(*text, rewriter), leaks);
    return !leaks.leak() && restored == *text;
}

/// Completes the mapping. Returns what the package holds.
Report::PackageDigest assign(const FuzzPackage& description, Report::Mapping& mapping, unsigned seed) {
    Report::Budget budget(ReportFuzz::smallLimits());
    Report::Originals originals(mapping, budget);
    Report::OriginalsFinder finder(originals);
    addWords(description, originals);
    read(description.bytes(), budget, finder);
    takeSidecar(description, finder);
    originals.settle();
    Report::Random random(seed);
    assignReplacements(originals, mapping, random);
    return finder.digest();
}

void checkMapping(const Report::Mapping& mapping) {
    const std::string text = writeMapping(mapping);
    require(writeMapping(Report::parseMapping(text)) == text, "a mapping is read as it was written");
}

/// Whether no original is left in a clean package, and restoring gives the original texts.
bool isClean(const std::string& clean, const Report::Mapping& mapping, const Report::PackageDigest& digest) {
    Report::Budget budget(ReportFuzz::smallLimits());
    Report::LeakCheck check(mapping);
    read(clean, budget, check);
    return !check.leak() && check.restored() == digest;
}

/// The events without the sizes of compressed members, which another compression changes.
std::string eventsOf(const std::string& package) {
    class Recorder : public ReportTest::EventRecorder {
    public:
        void beginMember(const Report::MemberHeader& header) override {
            Report::MemberHeader shown = header;
            shown.size = 0;
            shown.name += " " + header.owner + " " + header.group;
            EventRecorder::beginMember(shown);
        }
    };
    ReportTest::MemorySource source(package);
    Report::Budget budget(ReportFuzz::smallLimits());
    Recorder recorder;
    static_cast<void>(readPackage(source, budget, recorder));
    return recorder.text();
}

/// As often does clean choose replacements again if one forms an original, or another replacement, with what
/// is around it.
constexpr unsigned mostTries = 8;

/// Cleans and restores. Returns whether the clean package and its sidecar are clean.
bool passes(const FuzzPackage& description, unsigned seed) {
    Report::Mapping mapping = earlierMapping(description);
    const Report::PackageDigest digest = assign(description, mapping, seed);
    checkMapping(mapping);
    const std::string clean = rewritten(description.bytes(), mapping.replacements());
    if (!isClean(clean, mapping, digest) || !isSidecarClean(description, mapping)) {
        return false;
    }
    require(eventsOf(rewritten(clean, mapping.originals())) == eventsOf(description.bytes()),
            "the restored package is the original");
    return true;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const FuzzPackage description(Fuzz::textOf(data, size), {"map", "words"});
    try {
        // A map that was changed by hand can hold replacements of another form, which clean never chooses.
        const bool mapGiven = description.find("map").has_value();
        unsigned seed = 1;
        while (!passes(description, seed) && !mapGiven) {
            ++seed;
            require(seed <= mostTries, "nothing leaks, and restoring gives the original");
        }
    } catch (const Report::CleanRefusal&) {
        return 0;
    } catch (const Report::NoReplacement&) {
        return 0;
    }
    return 0;
}

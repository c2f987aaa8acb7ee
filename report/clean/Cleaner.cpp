#include "Cleaner.hpp"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <memory>
#include <random>
#include <stdexcept>
#include <utility>

#include <sys/stat.h>

#include "AsideFile.hpp"
#include "Assignment.hpp"
#include "DescriptorSink.hpp"
#include "FixedNames.hpp"
#include "LeakCheck.hpp"
#include "MapFile.hpp"
#include "OriginalsFinder.hpp"
#include "Overwriting.hpp"
#include "PackageGuard.hpp"
#include "PackageRewriter.hpp"
#include "PackageSource.hpp"
#include "SidecarText.hpp"
#include "SmallFile.hpp"
#include "WordList.hpp"

namespace Report {

namespace {

/// Replacements must not be predictable: whoever knows the choice knows something of the originals.
Random unpredictable() {
    std::random_device device;
    std::seed_seq seed{device(), device(), device(), device(), device(), device(), device(), device()};
    return Random(seed);
}

[[noreturn]] void refuseFile(const std::string& path, const std::string& reason) {
    throw CleanRefusal(CleanRefusal::unusable, path + ": " + reason);
}

/// Everything that the run reads, without the map: the run continues it.
std::vector<std::string> filesToRead(const CleanRequest& request) {
    std::vector<std::string> files{request.package};
    for (const std::optional<std::string>& file : {request.words, request.runFile}) {
        if (file) {
            files.push_back(*file);
        }
    }
    return files;
}

/// The output is read again, so it must be a file. No result replaces another one, nor a file that is read.
void checkPaths(const CleanRequest& request) {
    const std::string& output = request.output;
    struct stat existing {};
    if (output == "-" || (::stat(output.c_str(), &existing) == 0 && !S_ISREG(existing.st_mode))) {
        refuseFile(output, "the clean package needs a regular file");
    }
    if (replacesAny(output, {request.package})) {
        refuseFile(output, "the clean package would replace the original");
    }
    const std::vector<std::string> inputs = filesToRead(request);
    if (replacesAny(output, inputs)) {
        refuseFile(output, "--output names a file that is read");
    }
    const std::string newSidecar = output + ".run";
    if (request.runFile && replacesAny(newSidecar, inputs)) {
        refuseFile(newSidecar, "the new sidecar would replace a file that is read");
    }
    std::vector<std::string> others = inputs;
    others.insert(others.end(), {output, newSidecar});
    if (replacesAny(request.map, others)) {
        refuseFile(request.map, "the map needs a file of its own");
    }
}

void writeText(const AsideFile& file, const std::string& name, const std::string& text) {
    DescriptorSink(file.descriptor(), name).write(text);
}

/// Gives complete files their names: all of them, or none.
void keepAll(const std::vector<AsideFile*>& files) {
    std::vector<AsideFile*> kept;
    try {
        for (AsideFile* file : files) {
            file->keep();
            kept.push_back(file);
        }
    } catch (...) {
        for (AsideFile* file : kept) {
            file->takeBack();
        }
        throw;
    }
}

/// The limits for reading a package again. The first reading has shown that its time is bounded; compressing
/// the copy takes longer.
Limits withoutTimeLimit(Limits limits) {
    limits.maxTime = std::chrono::hours(24);
    return limits;
}

/// An original would remain, or would not come back.
class LeakRefusal : public CleanRefusal {
public:
    LeakRefusal(const std::string& name, const std::string& reason)
        : CleanRefusal(notClean, name + ": " + reason) {}
};

/// One run of clean.
class Cleaning {
public:
    explicit Cleaning(const CleanRequest& what)
        : request(what),
          source(what.package),
          mapFile(what.map, what.limits.maxMemory),
          mapping(mapFile.readIfExists()),
          budget(what.limits),
          originals(mapping, budget),
          finder(originals) {}

    std::vector<std::string> run() {
        source.keepPipe(request.limits.maxMemory);
        takeWords();
        readOriginals();
        writeWithoutLeak();
        if (request.summary) {
            notes.push_back(summary());
        }
        return std::move(notes);
    }

private:
    void takeWords();
    void readOriginals();
    void writeWithoutLeak();
    void writeOutputs();
    void writePackage(const AsideFile& output);
    std::string cleanSidecar(const std::string& name) const;
    std::string checkPackage(const AsideFile& output);
    static void refuseLeak(const std::string& name, const std::optional<std::string>& leak, bool restored);
    std::string summary() const;

    const CleanRequest& request;
    PackageSource source;
    MapFile mapFile;
    Mapping mapping;
    Budget budget;
    Originals originals;
    OriginalsFinder finder;
    std::optional<UsedSidecar> sidecar;
    std::vector<std::string> notes;
};

void Cleaning::takeWords() {
    if (!request.words) {
        return;
    }
    try {
        for (const ListedWord& word :
             parseWordList(readSmallFile(*request.words, request.limits.maxMemory))) {
            if (isFixedName(word.name)) {
                notes.push_back(*request.words + ": line " + std::to_string(word.line) + ": " + word.name +
                                " stays: it is a fixed name");
            } else {
                originals.addName(word.name);
            }
        }
    } catch (const std::invalid_argument& error) {
        refuseFile(*request.words, error.what());
    }
}

void Cleaning::readOriginals() {
    PackageGuard guard(source.shownPath(), budget, finder);
    const PackageFacts facts = readPackage(*source.open(), budget, guard);
    guard.checkEnd(facts);
    if (request.runFile) {
        sidecar = readUsedSidecar(*request.runFile, facts.sha256, notes);
    }
    if (sidecar) {
        finder.takeSidecar(sidecar->content, sidecar->text);
    }
    originals.settle();
}

/// A replacement can form an original, or another replacement, by chance, together with a number in front of
/// it or behind it. Other replacements need not.
void Cleaning::writeWithoutLeak() {
    constexpr int mostTries = 8;
    const Mapping earlier = mapping;
    Random random = unpredictable();
    for (int tried = 1;; ++tried) {
        assignReplacements(originals, mapping, random);
        try {
            writeOutputs();
            return;
        } catch (const LeakRefusal&) {
            if (tried == mostTries) {
                throw;
            }
        }
        mapping = earlier;
    }
}

void Cleaning::writeOutputs() {
    AsideFile output(request.output);
    writePackage(output);
    const std::string sha256 = checkPackage(output);
    std::vector<AsideFile*> files{&mapFile.writeAside(mapping)};
    std::optional<AsideFile> runFile;
    if (sidecar) {
        const std::string name = request.output + ".run";
        writeText(runFile.emplace(name), name, withChecksum(cleanSidecar(name), sha256));
        files.push_back(&*runFile);
    }
    files.push_back(&output);
    keepAll(files);
}

void Cleaning::writePackage(const AsideFile& output) {
    DescriptorSink sink(output.descriptor(), request.output);
    Budget limits(withoutTimeLimit(request.limits));
    PackageWriter writer(sink, limits);
    PackageRewriter rewriter(mapping.replacements(), writer);
    PackageGuard guard(source.shownPath(), limits, rewriter);
    guard.checkEnd(readPackage(*source.open(), limits, guard));
}

void Cleaning::refuseLeak(const std::string& name, const std::optional<std::string>& leak, bool restored) {
    if (leak) {
        throw LeakRefusal(name, "it would still hold " + *leak);
    }
    if (!restored) {
        throw LeakRefusal(name, "it could not be restored exactly");
    }
}

/// The sidecar's text with the replacements.
std::string Cleaning::cleanSidecar(const std::string& name) const {
    Rewriter rewriter(mapping.replacements());
    const std::string clean = handleSidecar(sidecar->text, rewriter);
    LeakFinder leaks(mapping);
    const std::string restored = handleSidecar(clean, leaks);
    refuseLeak(name, leaks.leak(), restored == sidecar->text);
    return clean;
}

/// Reads the clean package again. Returns its checksum.
std::string Cleaning::checkPackage(const AsideFile& output) {
    const PackageSource copy(output.temporaryName());
    Budget limits(withoutTimeLimit(request.limits));
    LeakCheck check(mapping);
    PackageGuard guard(request.output, limits, check);
    const PackageFacts facts = readPackage(*copy.open(), limits, guard);
    guard.checkEnd(facts);
    refuseLeak(request.output, check.leak(), check.restored() == finder.digest());
    return facts.sha256;
}

std::string counted(std::size_t count, const std::string& one, const std::string& many) {
    return std::to_string(count) + " " + (count == 1 ? one : many);
}

std::string Cleaning::summary() const {
    // A word of --words need not be in the package.
    const auto names = std::ranges::count_if(originals.names(), [this](const std::string& name) {
        return originals.mayOccur(name) || mapping.isReplacement(name);
    });
    return request.output + ": " + counted(originals.addresses().size(), "address", "addresses") + " and " +
           counted(static_cast<std::size_t>(names), "name", "names") + " replaced; the map is " + request.map;
}

}  // namespace

std::vector<std::string> cleanPackage(const CleanRequest& request) {
    try {
        checkPaths(request);
        return Cleaning(request).run();
    } catch (...) {
        throwAsRefusal();
    }
}

}  // namespace Report

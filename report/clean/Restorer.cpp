#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include <unistd.h>

#include "AsideFile.hpp"
#include "Cleaner.hpp"
#include "DescriptorSink.hpp"
#include "DescriptorSource.hpp"
#include "HashedStream.hpp"
#include "MapFile.hpp"
#include "Overwriting.hpp"
#include "PackageGuard.hpp"
#include "PackageRewriter.hpp"
#include "PackageSource.hpp"
#include "SidecarText.hpp"

namespace Report {

namespace {

constexpr std::string_view gzipStart = "\x1f\x8b";

/// One run of restore.
class Restoring {
public:
    explicit Restoring(const RestoreRequest& what)
        : request(what), source(what.input), mapping(MapFile(what.map, what.limits.maxMemory).read()) {}

    std::vector<std::string> run() {
        if (request.output) {
            checkPaths();
            output.emplace(*request.output);
        }
        const bool isPackage = source.peek(gzipStart.size()) == gzipStart;
        if (isPackage && !output && ::isatty(STDOUT_FILENO) == 1) {
            throw CleanRefusal(CleanRefusal::unusable, "standard output is a terminal: use -o");
        }
        DescriptorSink sink(output ? output->descriptor() : STDOUT_FILENO,
                            request.output.value_or("standard output"));
        if (isPackage) {
            restorePackage(sink);
        } else {
            restoreText(sink);
        }
        if (output) {
            output->keep();
        }
        return std::move(notes);
    }

private:
    void checkPaths() const;
    void restorePackage(ByteSink& sink);
    void restoreSidecar(const std::string& sha256);
    void restoreText(ByteSink& sink);

    const RestoreRequest& request;
    DescriptorSource source;
    Mapping mapping;
    std::optional<AsideFile> output;
    std::vector<std::string> notes;
};

/// No result replaces a file that is read.
void Restoring::checkPaths() const {
    const std::vector<std::string> inputs{request.input, request.map,
                                          request.runFile.value_or(request.input)};
    if (replacesAny(*request.output, inputs)) {
        throw CleanRefusal(CleanRefusal::unusable, *request.output + ": --output names a file that is read");
    }
    const std::string newSidecar = *request.output + ".run";
    if (request.runFile && replacesAny(newSidecar, inputs)) {
        throw CleanRefusal(CleanRefusal::unusable,
                           newSidecar + ": the new sidecar would replace a file that is read");
    }
}

void Restoring::restorePackage(ByteSink& sink) {
    Limits bounds = request.limits;
    bounds.maxTime *= 4;
    Budget limits(bounds);
    PackageWriter writer(sink, limits);
    PackageRewriter rewriter(mapping.originals(), writer);
    PackageGuard guard(request.input, limits, rewriter);
    const PackageFacts facts = readPackage(source, limits, guard);
    guard.checkEnd(facts);
    if (request.runFile && output && !output->temporaryName().empty()) {
        restoreSidecar(facts.sha256);
    }
}

std::string checksumOf(const std::string& path) {
    const PackageSource file(path);
    const std::unique_ptr<ByteSource> bytes = file.open();
    HashedStream stream(*bytes);
    while (!stream.next().empty()) {
    }
    return stream.sha256();
}

void Restoring::restoreSidecar(const std::string& sha256) {
    const std::optional<UsedSidecar> sidecar = readUsedSidecar(*request.runFile, sha256, notes);
    if (!sidecar) {
        return;
    }
    const std::string name = *request.output + ".run";
    Rewriter rewriter(mapping.originals());
    const std::string text = handleSidecar(sidecar->text, rewriter);
    AsideFile file(name);
    DescriptorSink(file.descriptor(), name).write(withChecksum(text, checksumOf(output->temporaryName())));
    file.keep();
}

void Restoring::restoreText(ByteSink& sink) {
    Rewriter rewriter(mapping.originals());
    TextStream text(rewriter, [&sink](std::string_view bytes) { sink.write(bytes); });
    std::vector<char> buffer(std::size_t{64} << 10);
    for (std::size_t count = source.read(buffer); count > 0; count = source.read(buffer)) {
        text.append({buffer.data(), count});
    }
    text.finish();
}

}  // namespace

std::vector<std::string> restore(const RestoreRequest& request) {
    try {
        return Restoring(request).run();
    } catch (...) {
        throwAsRefusal();
    }
}

}  // namespace Report

#include "PackageLoader.hpp"

#include <memory>
#include <string_view>
#include <utility>

#include "Budget.hpp"
#include "Identity.hpp"
#include "PackageAssembler.hpp"
#include "PackageReader.hpp"
#include "ValueLine.hpp"

namespace Report {
namespace {

/// Takes the sidecar that the options ask for.
void takeSidecar(Package& package, const LoadOptions& options) {
    const bool named = options.runFile.has_value();
    if (!options.useRun || (!named && package.source == "-")) {
        return;
    }
    SidecarResult result =
        readSidecar(named ? *options.runFile : package.source + ".run", named, package.sha256);
    package.sidecarState = result.state;
    package.sidecarError = std::move(result.error);
    package.sidecar = std::move(result.sidecar);
}

/// Joins the lines of a log to entries.
class EntryStream {
public:
    EntryStream(EntryParser entryParser, std::size_t longest,
                const std::function<bool(const LogEntry&)>& visitor)
        : parser(std::move(entryParser)), maxEntry(longest), visit(visitor) {}

    /// Returns false if no more entries are wanted.
    bool add(std::string_view line) {
        const bool timed = parser.parse(line, next);
        if (!timed && entry.time) {
            append(next.text);
            return true;
        }
        if (!timed && trimLine(line).empty()) {
            return true;
        }
        const bool wanted = finish();
        std::swap(entry, next);
        begun = wanted;
        return wanted;
    }

    /// Visits the last entry.
    bool finish() { return !std::exchange(begun, false) || visit(entry); }

private:
    void append(std::string_view line) {
        if (entry.text.size() < maxEntry) {
            entry.text += '\n';
            entry.text += line.substr(0, maxEntry - entry.text.size());
        }
    }

    EntryParser parser;
    std::size_t maxEntry;
    const std::function<bool(const LogEntry&)>& visit;
    LogEntry entry;
    bool begun = false;  // `entry` was not visited yet
    LogEntry next;
};

}  // namespace

Package loadPackage(const PackageSource& source, const LoadOptions& options) {
    Budget budget(options.limits);
    PackageAssembler assembler(budget, options.keep == Keep::all, options.forms);
    const std::unique_ptr<ByteSource> bytes = source.open();
    PackageFacts facts = readPackage(*bytes, budget, assembler);

    Package package = assembler.take();
    package.source = source.path();
    package.sha256 = std::move(facts.sha256);
    package.size = facts.size;
    package.end = std::move(facts.end);
    if (package.end.limit) {
        package.unread.push_back({"", *package.end.limit});
    }
    takeSidecar(package, options);
    identify(package, options);
    return package;
}

void forEachEntry(const Package& package, const Part& part, std::size_t maxLine,
                  const std::function<bool(const LogEntry&)>& visit) {
    if (!part.log) {
        return;
    }
    EntryStream stream(parserFor(package), maxLine, visit);
    part.text.forEachLine(maxLine, [&](std::string_view line) { return stream.add(line); });
    stream.finish();
}

}  // namespace Report

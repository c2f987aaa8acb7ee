#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "Commands.hpp"
#include "ExitStatus.hpp"
#include "HashedStream.hpp"
#include "Output.hpp"
#include "Packages.hpp"
#include "Progress.hpp"
#include "ReadAhead.hpp"
#include "RuleSet.hpp"
#include "SafeText.hpp"
#include "Store.hpp"
#include "Words.hpp"

namespace Report {

namespace {

/// The checksum of a package that can be read twice. None for a pipe, and for a file that cannot be read:
/// that is reported when it is read as a package.
std::optional<std::string> checksumOf(const std::string& path) {
    try {
        const PackageSource source(path);
        if (!source.isFile()) {
            return std::nullopt;
        }
        const auto bytes = source.open();
        HashedStream stream(*bytes);
        while (!stream.next().empty()) {
        }
        return stream.sha256();
    } catch (const std::system_error&) {
        return std::nullopt;
    }
}

/// What was read of a package.
struct Candidate {
    bool known = false;              ///< the store contains it
    std::optional<Package> package;  ///< with findings; none if it is known or cannot be read
    std::string reason;              ///< why it cannot be read
};

/// Reads packages in one thread.
class Candidates {
public:
    /// `inStore` are the packages that need not be read.
    Candidates(const Arguments& what, const Checksums& inStore)
        : arguments(what), known(inStore), rules(readRules(what)), reading{.forms = rules.logForms()} {}

    Candidate read(const std::string& path) const {
        Candidate candidate;
        if (path.ends_with(".run")) {  // a pattern such as *.tgz* names these, too
            candidate.reason = "a sidecar, not a package";
            return candidate;
        }
        const std::optional<std::string> checksum = checksumOf(path);
        candidate.known = checksum && known.contains(*checksum);
        if (!candidate.known) {
            candidate.package = readPackage(path, checksum, candidate.reason);
        }
        return candidate;
    }

private:
    std::optional<Package> readPackage(const std::string& path, const std::optional<std::string>& checksum,
                                       std::string& reason) const;

    const Arguments& arguments;
    const Checksums& known;
    RuleSet rules;
    Reading reading;
};

std::optional<Package> Candidates::readPackage(const std::string& path,
                                               const std::optional<std::string>& checksum,
                                               std::string& reason) const {
    std::optional<Package> package = tryReadJudged(path, arguments, reading, reason);
    if (!package) {
        return std::nullopt;
    }
    if (package->sha256.empty()) {  // its end lies beyond the time limit
        package->sha256 = checksum.value_or("");
    }
    if (package->sha256.empty()) {
        reason = "its checksum is not known, since it was not fully read";
        return std::nullopt;
    }
    rules.apply(*package, arguments.limits.maxLine);
    return package;
}

/// One run of add.
class Adding {
public:
    explicit Adding(const Arguments& what) : arguments(what), store(what.store), inStore(store.checksums()) {}

    int run();

private:
    std::vector<ReadAhead<Candidate>::Maker> readers();
    void take(const Candidate& candidate, const std::string& path);
    void addNew(const Package& package);
    void commitSometimes();
    std::string summary() const;

    using Clock = std::chrono::steady_clock;

    const Arguments& arguments;
    Store store;
    const Checksums inStore;  ///< before this run
    Clock::time_point committed = Clock::now();
    std::size_t added = 0;
    std::size_t damaged = 0;  ///< of those that were added
    std::size_t known = 0;
    int status = 0;
};

/// To read packages takes twice as long as to write their rows.
std::vector<ReadAhead<Candidate>::Maker> Adding::readers() {
    std::vector<ReadAhead<Candidate>::Maker> makers(std::clamp(std::thread::hardware_concurrency(), 1U, 2U));
    for (auto& maker : makers) {
        const auto candidates = std::make_shared<const Candidates>(arguments, inStore);
        maker = [this, candidates](std::size_t number) { return candidates->read(arguments.files[number]); };
    }
    return makers;
}

int Adding::run() {
    Progress progress("packages", arguments.files.size());
    ReadAhead<Candidate> candidates(arguments.files.size(), readers());
    for (const std::string& path : arguments.files) {
        const Candidate candidate = candidates.next();
        if (!candidate.reason.empty()) {
            progress.clear();
        }
        take(candidate, path);
        commitSometimes();
        progress.advance();
    }
    store.commit();
    progress.clear();
    Output output({});
    output.write([this](std::ostream& out, const TextStyle&) { out << summary(); });
    output.finish();
    return status;
}

void Adding::take(const Candidate& candidate, const std::string& path) {
    if (candidate.known) {
        ++known;
    } else if (candidate.package) {
        addNew(*candidate.package);
    } else {
        complainOf(path, candidate.reason);
        status = exitTrouble;
    }
}

void Adding::addNew(const Package& package) {
    if (!store.add(package)) {
        ++known;
        return;
    }
    ++added;
    constexpr std::array damages{Verdict::cut, Verdict::altered, Verdict::unreadable};
    damaged += std::ranges::find(damages, package.verdict) == damages.end() ? 0 : 1;
}

/// Writes take long, and a killed run loses what is not committed.
void Adding::commitSometimes() {
    if (Clock::now() - committed >= std::chrono::seconds(1)) {
        store.commit();
        committed = Clock::now();
    }
}

std::string Adding::summary() const {
    std::string text = forTerminal(arguments.store) + ": " + counted(added, "package") + " added";
    if (damaged > 0) {
        text += " (" + grouped(damaged) + " damaged)";
    }
    return text + (known > 0 ? ", " + grouped(known) + " already there\n" : "\n");
}

}  // namespace

int add(const Arguments& arguments) {
    return Adding(arguments).run();
}

}  // namespace Report

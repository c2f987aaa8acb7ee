#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <system_error>
#include <utility>

#include "Commands.hpp"
#include "ExitStatus.hpp"
#include "HashedStream.hpp"
#include "Message.hpp"
#include "Output.hpp"
#include "Packages.hpp"
#include "Progress.hpp"
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

/// One run of add.
class Adding {
public:
    explicit Adding(const Arguments& what)
        : arguments(what), rules(readRules(what)), reading{.forms = rules.logForms()}, store(what.store) {}

    int run();

private:
    void take(const std::string& path);
    void addTo(const std::string& path, const std::optional<std::string>& checksum);
    void commitSometimes();
    std::string summary() const;

    using Clock = std::chrono::steady_clock;

    const Arguments& arguments;
    RuleSet rules;
    Reading reading;
    Store store;
    Clock::time_point committed = Clock::now();
    std::size_t added = 0;
    std::size_t damaged = 0;  ///< of those that were added
    std::size_t known = 0;
    int status = 0;
};

int Adding::run() {
    Progress progress("packages", arguments.files.size());
    for (const std::string& path : arguments.files) {
        take(path);
        commitSometimes();
        progress.advance();
    }
    store.commit();
    progress.finish();
    Output output({});
    output.write([this](std::ostream& out, const TextStyle&) { out << summary(); });
    output.finish();
    return status;
}

void Adding::take(const std::string& path) {
    const std::optional<std::string> checksum = checksumOf(path);
    if (checksum && store.contains(*checksum)) {
        ++known;
    } else {
        addTo(path, checksum);
    }
}

void Adding::addTo(const std::string& path, const std::optional<std::string>& checksum) {
    std::string reason;
    std::optional<Package> package = readJudged(path, arguments, reading, reason);
    if (package && package->sha256.empty()) {  // its end lies beyond the time limit
        package->sha256 = checksum.value_or("");
    }
    if (package && package->sha256.empty()) {
        complain((path == "-" ? "standard input" : path) +
                 ": its checksum is not known, since it was not fully read");
        package.reset();
    }
    if (!package) {
        status = exitTrouble;
        return;
    }
    rules.apply(*package, arguments.limits.maxLine);
    if (!store.add(*package)) {
        ++known;
        return;
    }
    ++added;
    constexpr std::array damages{Verdict::cut, Verdict::altered, Verdict::unreadable};
    damaged += std::ranges::find(damages, package->verdict) == damages.end() ? 0 : 1;
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

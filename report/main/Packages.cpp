#include "Packages.hpp"

#include <algorithm>
#include <exception>
#include <iterator>
#include <new>
#include <string_view>
#include <system_error>
#include <utility>

#include "ExitStatus.hpp"
#include "Judge.hpp"
#include "Message.hpp"
#include "Output.hpp"
#include "Overwriting.hpp"
#include "PackageSource.hpp"
#include "SidecarError.hpp"
#include "SmallFile.hpp"

namespace Report {
namespace {

LoadOptions optionsFor(const Arguments& arguments, const Reading& reading) {
    return {arguments.limits,  reading.keep,     arguments.board, arguments.kind,
            arguments.runFile, arguments.useRun, reading.forms};
}

/// The reason of a failure, without the path of the package.
std::string reasonOf(const std::exception& error) {
    const auto* const systemError = dynamic_cast<const std::system_error*>(&error);
    if (dynamic_cast<const std::bad_alloc*>(&error) != nullptr) {
        return "not enough memory";
    }
    if (systemError != nullptr) {
        return systemError->code().message();
    }
    return error.what();
}

}  // namespace

std::optional<Package> tryReadJudged(const std::string& path, const Arguments& arguments,
                                     const Reading& reading, std::string& reason) {
    try {
        const PackageSource source(path);
        Package package = loadPackage(source, optionsFor(arguments, reading));
        judge(package, arguments.expectation);
        return package;
    } catch (const SidecarError&) {
        throw;  // the package itself can be read
    } catch (const std::exception& error) {
        reason = reasonOf(error);
        return std::nullopt;
    }
}

void complainOf(const std::string& path, const std::string& reason) {
    complain((path == "-" ? "standard input" : path) + ": " + reason);
}

std::optional<Package> readJudged(const std::string& path, const Arguments& arguments, const Reading& reading,
                                  std::string& reason) {
    std::optional<Package> package = tryReadJudged(path, arguments, reading, reason);
    if (!package) {
        complainOf(path, reason);
    }
    return package;
}

int useEach(const Arguments& arguments, const Reading& reading, const std::function<int(Package&)>& use) {
    int status = 0;
    for (const std::string& path : arguments.files) {
        std::string reason;
        std::optional<Package> package = readJudged(path, arguments, reading, reason);
        status = std::max(status, package ? use(*package) : exitTrouble);
    }
    return status;
}

Packages readAll(const Arguments& arguments, const RuleSet& rules) {
    Packages packages;
    const Reading reading{.forms = rules.logForms()};
    for (const std::string& path : arguments.files) {
        std::string reason;
        std::optional<Package> package = readJudged(path, arguments, reading, reason);
        if (!package) {
            packages.unreadable.push_back({path, reason, packages.list.size() + packages.unreadable.size()});
            continue;
        }
        rules.apply(*package, arguments.limits.maxLine);
        packages.list.push_back(std::move(*package));
    }
    return packages;
}

void checkOutput(const Arguments& arguments) {
    std::vector<std::string> inputs = arguments.files;
    inputs.insert(inputs.end(), arguments.ruleFiles.begin(), arguments.ruleFiles.end());
    if (!arguments.store.empty()) {
        inputs.push_back(arguments.store);
    }
    if (arguments.runFile) {
        inputs.push_back(*arguments.runFile);
    } else if (arguments.useRun) {
        std::ranges::transform(arguments.files, std::back_inserter(inputs),
                               [](const std::string& package) { return package + ".run"; });
    }
    if (arguments.output && *arguments.output != "-" && replacesAny(*arguments.output, inputs)) {
        throw OutputError(*arguments.output + ": --output names a file that is read");
    }
}

RuleSet readRules(const Arguments& arguments) {
    RuleSet rules;
    for (const std::string& path : arguments.ruleFiles) {
        rules.add(readSmallFile(path, arguments.limits.maxMemory), path);
    }
    return rules;
}

}  // namespace Report

#include <string>

#include <unistd.h>

#include "Cleaner.hpp"
#include "Commands.hpp"
#include "Rewriting.hpp"
#include "Terminal.hpp"

namespace Report {

int clean(const Arguments& arguments) {
    const std::string& output = *arguments.output;
    return rewrite([&] {
        return cleanPackage({.package = arguments.files.front(),
                             .output = output,
                             .map = arguments.map.value_or(output + ".map"),
                             .words = arguments.words,
                             .runFile = sidecarToRewrite(arguments),
                             .limits = arguments.limits,
                             .summary = isTerminal(STDERR_FILENO)});
    });
}

}  // namespace Report

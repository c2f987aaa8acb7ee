#include <string>

#include "Cleaner.hpp"
#include "Commands.hpp"
#include "Rewriting.hpp"

namespace Report {

int clean(const Arguments& arguments) {
    const std::string& output = *arguments.output;
    return rewrite([&] {
        return cleanPackage({.package = arguments.files.front(),
                             .output = output,
                             .map = arguments.map.value_or(output + ".map"),
                             .words = arguments.words,
                             .runFile = sidecarToRewrite(arguments),
                             .limits = arguments.limits});
    });
}

}  // namespace Report

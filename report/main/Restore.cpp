#include <optional>
#include <string>

#include "Cleaner.hpp"
#include "Commands.hpp"
#include "ExitStatus.hpp"
#include "Message.hpp"
#include "Rewriting.hpp"

namespace Report {

int restoreFile(const Arguments& arguments) {
    const std::string& input = arguments.files.front();
    if (input == "-" && !arguments.map) {
        complain("standard input has no map beside it: --map names one");
        return exitTrouble;
    }
    return rewrite([&] {
        return restore({.input = input,
                        .map = arguments.map.value_or(input + ".map"),
                        .output = arguments.output == "-" ? std::nullopt : arguments.output,
                        .runFile = sidecarToRewrite(arguments),
                        .limits = arguments.limits});
    });
}

}  // namespace Report

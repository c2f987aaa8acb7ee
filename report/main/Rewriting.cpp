#include "Rewriting.hpp"

#include <unistd.h>

#include "CleanRefusal.hpp"
#include "Message.hpp"

namespace Report {

std::optional<std::string> sidecarToRewrite(const Arguments& arguments) {
    const std::string& package = arguments.files.front();
    const std::string beside = package + ".run";
    if (arguments.runFile || !arguments.useRun || package == "-" || ::access(beside.c_str(), F_OK) != 0) {
        return arguments.runFile;
    }
    return beside;
}

int rewrite(const std::function<std::vector<std::string>()>& action) {
    try {
        for (const std::string& note : action()) {
            complain(note);
        }
        return 0;
    } catch (const CleanRefusal& refusal) {
        complain(refusal.what());
        return refusal.status();
    }
}

}  // namespace Report

#include <cstddef>
#include <ostream>
#include <string>

#include "Commands.hpp"
#include "ExitStatus.hpp"
#include "Output.hpp"
#include "Packages.hpp"
#include "Renderers.hpp"

namespace Report {

int json(const Arguments& arguments) {
    Packages packages = readAll(arguments, readRules(arguments));
    for (const auto& [path, reason, place] : packages.unreadable) {
        Package unreadable;  // a program finds every package that it asked for
        unreadable.source = path;
        unreadable.end.reason = reason;
        packages.list.insert(packages.list.begin() + static_cast<std::ptrdiff_t>(place), unreadable);
    }
    Output output({arguments.output});
    output.write([&](std::ostream& out, const TextStyle&) {
        renderJson(out, packages.list, arguments.limits.maxLine);
    });
    output.finish();
    return packages.unreadable.empty() ? 0 : exitTrouble;
}

}  // namespace Report

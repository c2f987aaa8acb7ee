#include <chrono>
#include <ostream>
#include <utility>
#include <vector>

#include "Commands.hpp"
#include "Output.hpp"
#include "Packages.hpp"
#include "Renderers.hpp"

namespace Report {

int metrics(const Arguments& arguments) {
    std::vector<Package> packages;
    const int status = useEach(arguments, {}, [&](Package& package) {
        packages.push_back(std::move(package));
        return 0;
    });
    Output output({arguments.output});
    const Time now = std::chrono::floor<Time::duration>(std::chrono::system_clock::now());
    if (!packages.empty()) {  // a collector keeps the last values
        output.write([&](std::ostream& out, const TextStyle&) { renderMetrics(out, packages, now); });
    }
    output.finish();
    return status;
}

}  // namespace Report

#include <ostream>

#include "Commands.hpp"
#include "Judge.hpp"
#include "Output.hpp"
#include "Packages.hpp"
#include "Renderers.hpp"

namespace Report {

int check(const Arguments& arguments) {
    Output output({arguments.output});
    const int status = useEach(arguments, {Keep::evidence}, [&](const Package& package) {
        output.write([&](std::ostream& out, const TextStyle& style) { renderCheck(out, package, style); });
        return exitStatusOf(package.verdict);
    });
    output.finish();
    return status;
}

}  // namespace Report

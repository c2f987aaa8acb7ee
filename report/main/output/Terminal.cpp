#include "Terminal.hpp"

#include <cstdlib>
#include <string_view>

#include <sys/ioctl.h>
#include <unistd.h>

#include "Environment.hpp"

namespace Report {

bool isTerminal(int descriptor) {
    return ::isatty(descriptor) == 1;
}

TextStyle styleFor(int descriptor) {
    TextStyle style;
    if (!isTerminal(descriptor)) {
        return style;
    }
    const std::string_view type = environment("TERM");
    style.colour = environment("NO_COLOR").empty() && !type.empty() && type != "dumb";
    winsize size{};
    if (::ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) {
        style.width = size.ws_col;
    }
    return style;
}

}  // namespace Report

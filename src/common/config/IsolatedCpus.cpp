#include "IsolatedCpus.hpp"

#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "Console.hpp"
#include "TextInput.hpp"

namespace Korvel {
namespace {

/// True if a signal ended the last read. It can be repeated then.
bool wasInterrupted(std::FILE* file) {
    const bool interrupted = std::ferror(file) != 0 && errno == EINTR;
    std::clearerr(file);
    return interrupted;
}

std::string readKernelCommandLine() {
    flushStandardOutput();
    // "e": close-on-exec, so that other children do not inherit the pipe.
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen("/bin/cat /proc/cmdline", "re"),
                                                               ::pclose);
    if (!pipe) {
        return {};
    }
    std::string text;
    std::array<char, 256> piece{};
    std::size_t count = 0;
    do {
        count = std::fread(piece.data(), 1, piece.size(), pipe.get());
        text.append(piece.data(), count);
    } while (count > 0 || wasInterrupted(pipe.get()));
    if (text.ends_with('\n')) {
        text.pop_back();
    }
    return text;
}

}  // namespace

unsigned parseIsolatedCpus(const std::string& commandLine) {
    constexpr std::string_view option = "isolcpus=";
    const std::size_t found = commandLine.find(option);
    if (found == std::string::npos) {
        return 0;
    }
    std::istringstream list = inputFrom(commandLine.substr(found + option.size()));
    unsigned mask = 0;
    std::string item;
    while (std::getline(list, item, ',')) {
        if (item.size() == 1 && item[0] >= '0' && item[0] <= '3') {
            mask |= 1U << static_cast<unsigned>(item[0] - '0');
        }
    }
    return mask;
}

unsigned getIsolatedCpuMask() {
    static unsigned mask = 0;
    if (mask == 0) {
        mask = parseIsolatedCpus(readKernelCommandLine());
    }
    return mask;
}

}  // namespace Korvel
